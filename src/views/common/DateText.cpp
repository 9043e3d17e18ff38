#include "views/common/DateText.h"

#include <QDateTime>
#include <QRegularExpression>

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

QString mediumDateTime(Date date, const QLocale& system, const QTimeZone& zone)
{
    // A desktop without a language speaks as the program does.
    const QLocale locale =
        system.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : system;
    const bool isEnglish = locale.language() == QLocale::English;
    const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch();
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(sinceEpoch.count(), zone);
    return locale.toString(time.date(), mediumDateFormat(locale)) +
           (isEnglish ? QStringLiteral(" at ") : QStringLiteral(" ")) +
           locale.toString(time.time(), QLocale::ShortFormat);
}

} // namespace vellumry
