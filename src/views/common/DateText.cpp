#include "views/common/DateText.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <QStringBuilder>

namespace vellumry {

namespace {

/// Qt knows a long and a short form. Between the two lies the long one with a short month and
/// without the day of the week, wherever a language puts that.
QString mediumDateFormat(const QLocale& locale)
{
    static const QRegularExpression weekday(QStringLiteral("d{3,4}[\\s,.、،]*|[\\s,.、،]*d{3,4}$"));
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return format.remove(weekday).trimmed();
}

} // namespace

QString mediumDateTime(Date date)
{
    const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch();
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
    const QLocale locale;
    return locale.toString(local.date(), mediumDateFormat(locale)) % u", " %
           locale.toString(local.time(), QLocale::ShortFormat);
}

} // namespace vellumry
