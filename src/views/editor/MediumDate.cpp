#include "views/editor/MediumDate.h"

#include <QDateTime>
#include <QRegularExpression>

namespace vellumry {

namespace {

/// The long form without the day of the week and with the month in short.
QString dayFormat(const QLocale& locale)
{
    static const QRegularExpression weekday(QStringLiteral(R"(\s*[,،、]?\s*dddd[,،]?\s*(de\s+)?)"));
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.replace(weekday, QString());
    return format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM")).trimmed();
}

} // namespace

QString mediumDate(Date date, const QLocale& system, const QTimeZone& zone)
{
    // A system without a locale of its own speaks as the program does.
    const QLocale locale =
        system.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : system;
    const auto elapsed =
        std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch()).count();
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(elapsed, zone);
    const bool isEnglish = locale.language() == QLocale::English;
    return locale.toString(time.date(), dayFormat(locale)) +
           (isEnglish ? QStringLiteral(" at ") : QStringLiteral(" ")) +
           locale.toString(time.time(), QLocale::ShortFormat);
}

} // namespace vellumry
