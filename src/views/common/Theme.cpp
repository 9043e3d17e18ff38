#include "views/common/Theme.h"

#include "views/common/Fonts.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr qreal designedTextSize = 13;
constexpr qreal leastScale = 0.85;
constexpr qreal greatestScale = 1.6;
constexpr int leastRowPadding = 4; ///< above and below a line together

struct TypeSize {
    qreal size;
    int line;
    QFont::Weight weight;
    bool isMono = false;
    qreal tracking = 0; ///< between letters, as a part of the size
};

constexpr TypeSize typeSize(TextStyle style)
{
    switch (style) {
    case TextStyle::hero:
        return {24, 32, QFont::DemiBold};
    case TextStyle::title:
        return {20, 28, QFont::DemiBold};
    case TextStyle::sheetTitle:
        return {17, 24, QFont::DemiBold};
    case TextStyle::heading:
        return {15, 20, QFont::DemiBold};
    case TextStyle::body:
        return {13, 18, QFont::Normal};
    case TextStyle::bodyMedium:
        return {13, 18, QFont::Medium};
    case TextStyle::bodyStrong:
        return {13, 18, QFont::DemiBold};
    case TextStyle::label:
        return {12, 16, QFont::Normal};
    case TextStyle::labelMedium:
        return {12, 16, QFont::Medium};
    case TextStyle::labelStrong:
        return {12, 16, QFont::DemiBold};
    case TextStyle::caption:
        return {11, 14, QFont::Normal};
    case TextStyle::captionMedium:
        return {11, 14, QFont::Medium};
    case TextStyle::section:
        return {.size = 11, .line = 14, .weight = QFont::DemiBold, .tracking = 0.04};
    case TextStyle::content:
        return {.size = 14, .line = 22, .weight = QFont::Normal, .isMono = true};
    case TextStyle::contentSmall:
        return {.size = 12.5, .line = 18, .weight = QFont::Normal, .isMono = true};
    case TextStyle::path:
        return {.size = 11.5, .line = 16, .weight = QFont::Normal, .isMono = true};
    case TextStyle::paletteField:
        return {20, 28, QFont::Normal};
    case TextStyle::paletteRow:
        return {14, 20, QFont::Medium};
    case TextStyle::palettePassword:
        return {.size = 15, .line = 20, .weight = QFont::Medium, .isMono = true};
    case TextStyle::paletteResult:
        return {.size = 22, .line = 28, .weight = QFont::Medium, .isMono = true};
    }
    Q_UNREACHABLE();
}

qreal heldScale(qreal scale)
{
    return std::clamp(scale, leastScale, greatestScale);
}

} // namespace

qreal Theme::systemTextScale()
{
    const QFontInfo system(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
    return heldScale(system.pixelSize() / designedTextSize);
}

Theme::Theme(ColorScheme scheme, qreal textScale, QObject* parent)
    : QObject(parent), currentScheme(scheme), currentScale(heldScale(textScale))
{
}

void Theme::setScheme(ColorScheme scheme)
{
    if (currentScheme == scheme)
        return;
    currentScheme = scheme;
    Q_EMIT changed();
}

void Theme::setTextScale(qreal scale)
{
    const qreal held = heldScale(scale);
    if (qFuzzyCompare(currentScale, held))
        return;
    currentScale = held;
    Q_EMIT changed();
}

Theme::SystemFonts Theme::systemFonts()
{
    return {QFontDatabase::systemFont(QFontDatabase::GeneralFont),
            QFontDatabase::systemFont(QFontDatabase::FixedFont)};
}

void Theme::followSystemFont()
{
    followedFonts = systemFonts();
    // Through the application, since some news come to the windows and to nobody else.
    qApp->installEventFilter(this);
}

void Theme::takeSystemFont()
{
    const SystemFonts fonts = systemFonts();
    const qreal scale = systemTextScale();
    // Another family of the same size is another look, too.
    if (std::exchange(followedFonts, fonts) == fonts && qFuzzyCompare(currentScale, scale))
        return;
    currentScale = scale;
    Q_EMIT changed();
}

bool Theme::eventFilter(QObject* watched, QEvent* event)
{
    // The one comes from a desktop's own theme, the other from the toolkit's.
    const bool isFontChange = (event->type() == QEvent::ApplicationFontChange && watched == qApp) ||
                              (event->type() == QEvent::ThemeChange && watched->isWindowType());
    if (isFontChange)
        takeSystemFont();
    return false;
}

QFont Theme::font(TextStyle style) const
{
    const TypeSize type = typeSize(style);
    const int pixels = qRound(type.size * currentScale);
    QFont font = type.isMono ? monoFont(pixels, type.weight) : uiFont(pixels, type.weight);
    if (type.tracking > 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, type.tracking * pixels);
    return font;
}

int Theme::lineHeight(TextStyle style) const
{
    return qRound(typeSize(style).line * currentScale);
}

int Theme::rowHeight(int designed, TextStyle style) const
{
    return std::max(designed, lineHeight(style) + leastRowPadding);
}

QPalette Theme::palette() const
{
    const ColorTokens& token = colors();
    QPalette result;
    result.setColor(QPalette::Window, token.window);
    result.setColor(QPalette::WindowText, token.textPrimary);
    result.setColor(QPalette::Base, token.field);
    result.setColor(QPalette::AlternateBase, token.group);
    result.setColor(QPalette::Text, token.textPrimary);
    result.setColor(QPalette::PlaceholderText, token.textTertiary);
    result.setColor(QPalette::Button, token.card);
    result.setColor(QPalette::ButtonText, token.textPrimary);
    result.setColor(QPalette::Highlight, token.selectionText);
    result.setColor(QPalette::HighlightedText, token.textPrimary);
    result.setColor(QPalette::Link, token.accent);
    result.setColor(QPalette::ToolTipBase, token.tooltip);
    result.setColor(QPalette::ToolTipText, token.tooltipText);
    result.setColor(QPalette::Disabled, QPalette::Text, token.textDisabled);
    result.setColor(QPalette::Disabled, QPalette::WindowText, token.textDisabled);
    result.setColor(QPalette::Disabled, QPalette::ButtonText, token.textDisabled);
    return result;
}

} // namespace vellumry
