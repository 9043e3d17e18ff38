#include "views/palette/QuickSearchStyle.h"

namespace vellumry {

namespace {

constexpr QColor gray(int percentOfWhite)
{
    const int level = (percentOfWhite * 255 + 50) / 100; // rounded
    return {level, level, level};
}

constexpr QColor white(int alpha)
{
    return {255, 255, 255, alpha};
}

// What stands in for the icon colours.
constexpr QColor orange(0xEF, 0x87, 0x22);
constexpr QColor green(0x3C, 0x9F, 0x57);
constexpr QColor pink(0xE2, 0x50, 0x8F);

} // namespace

constinit const QColor QuickSearchStyle::background(0x17, 0x17, 0x17);
constinit const QColor QuickSearchStyle::stroke = white(0x24);
constinit const QColor QuickSearchStyle::hairline = white(0x14);
constinit const QColor QuickSearchStyle::text(0xF2, 0xF2, 0xF2);
constinit const QColor QuickSearchStyle::fieldText(0xFF, 0xFF, 0xFF);
constinit const QColor QuickSearchStyle::placeholder = gray(40);
constinit const QColor QuickSearchStyle::caret(0x62, 0xC6, 0xD5);
constinit const QColor QuickSearchStyle::textSelection(0x2A, 0x43, 0x47);
constinit const QColor QuickSearchStyle::subtleTextColor = gray(50);
constinit const QColor QuickSearchStyle::faintTextColor = gray(35);
constinit const QColor QuickSearchStyle::selectionBackground = gray(18);
constinit const QColor QuickSearchStyle::selectionStroke = white(0x1A);
constinit const QColor QuickSearchStyle::hoverBackground = gray(15);
constinit const QColor QuickSearchStyle::badgeText = gray(60);
constinit const QColor QuickSearchStyle::badgeFill = white(0x14);
constinit const QColor QuickSearchStyle::textOnSelection(0xAB, 0xAB, 0xAB);
constinit const QColor QuickSearchStyle::iconNeutral(0xC7, 0xC7, 0xC7);
constinit const QColor QuickSearchStyle::keycapFill = white(0x12);
constinit const QColor QuickSearchStyle::keycapStroke = white(0x1F);
constinit const QColor QuickSearchStyle::keycapText(0xC7, 0xC7, 0xC7);
constinit const QColor QuickSearchStyle::scrollHandle = white(0x33);
constinit const QColor QuickSearchStyle::scrollHandleHover = white(0x66);

QColor QuickSearchStyle::iconOrange()
{
    return color(QStringLiteral("FF9F0A"), orange);
}

QColor QuickSearchStyle::iconGreen()
{
    return color(QStringLiteral("30D158"), green);
}

QColor QuickSearchStyle::iconPink()
{
    return color(QStringLiteral("FF375F"), pink);
}

QColor QuickSearchStyle::color(const QString& hex, const QColor& fallback)
{
    QString digits = hex.trimmed().remove(u'#');
    if (digits.size() != 6 && digits.size() != 8)
        return fallback;
    for (const QChar c : std::as_const(digits)) {
        const char16_t unit = c.toLower().unicode();
        if (!(unit >= u'0' && unit <= u'9') && !(unit >= u'a' && unit <= u'f'))
            return fallback;
    }
    if (digits.size() == 6)
        digits += QLatin1String("ff");
    const uint rgba = digits.toUInt(nullptr, 16);
    return QColor(static_cast<int>(rgba >> 24), static_cast<int>(rgba >> 16 & 0xff),
                  static_cast<int>(rgba >> 8 & 0xff), static_cast<int>(rgba & 0xff));
}

} // namespace vellumry
