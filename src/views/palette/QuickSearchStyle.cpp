#include "views/palette/QuickSearchStyle.h"

namespace vellumry {

namespace {

QColor gray(float white)
{
    return QColor::fromRgbF(white, white, white);
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

const QColor QuickSearchStyle::background(0x17, 0x17, 0x17);
const QColor QuickSearchStyle::stroke = white(0x24);
const QColor QuickSearchStyle::hairline = white(0x14);
const QColor QuickSearchStyle::text(0xF2, 0xF2, 0xF2);
const QColor QuickSearchStyle::fieldText(Qt::white);
const QColor QuickSearchStyle::placeholder = gray(0.4F);
const QColor QuickSearchStyle::caret(0x62, 0xC6, 0xD5);
const QColor QuickSearchStyle::textSelection(0x2A, 0x43, 0x47);
const QColor QuickSearchStyle::subtleTextColor = gray(0.5F);
const QColor QuickSearchStyle::faintTextColor = gray(0.35F);
const QColor QuickSearchStyle::selectionBackground = gray(0.18F);
const QColor QuickSearchStyle::selectionStroke = white(0x1A);
const QColor QuickSearchStyle::hoverBackground = gray(0.15F);
const QColor QuickSearchStyle::badgeText = gray(0.6F);
const QColor QuickSearchStyle::badgeFill = white(0x14);
const QColor QuickSearchStyle::textOnSelection(0xAB, 0xAB, 0xAB);
const QColor QuickSearchStyle::iconNeutral(0xC7, 0xC7, 0xC7);
const QColor QuickSearchStyle::iconOrange = color(QStringLiteral("FF9F0A"), orange);
const QColor QuickSearchStyle::iconGreen = color(QStringLiteral("30D158"), green);
const QColor QuickSearchStyle::iconPink = color(QStringLiteral("FF375F"), pink);
const QColor QuickSearchStyle::keycapFill = white(0x12);
const QColor QuickSearchStyle::keycapStroke = white(0x1F);
const QColor QuickSearchStyle::keycapText(0xC7, 0xC7, 0xC7);
const QColor QuickSearchStyle::scrollHandle = white(0x33);
const QColor QuickSearchStyle::scrollHandleHover = white(0x66);

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
