#include "views/settings/AppearanceModeButton.h"

#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QtMath>

#include <utility>

namespace vellumry {

namespace {

constexpr QSize leastFace(56, 50);
constexpr int radius = 8;
constexpr int glyphSize = 18;
constexpr int symbolGap = 4;
constexpr int leastPadding = 6;
constexpr qreal chosenWidth = 1.5;

QString title(AppearanceMode mode)
{
    switch (mode) {
    case AppearanceMode::light:
        return QStringLiteral("Light");
    case AppearanceMode::dark:
        return QStringLiteral("Dark");
    case AppearanceMode::system:
        return QStringLiteral("System");
    }
    Q_UNREACHABLE();
}

QString symbolOf(AppearanceMode mode)
{
    switch (mode) {
    case AppearanceMode::light:
        return QStringLiteral("sun.max.fill");
    case AppearanceMode::dark:
        return QStringLiteral("moon.fill");
    case AppearanceMode::system:
        return QStringLiteral("circle.lefthalf.filled");
    }
    Q_UNREACHABLE();
}

QFont labelFont(const Theme& theme, bool isSelected)
{
    QFont font = theme.font(TextStyle::caption);
    if (isSelected)
        font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace

AppearanceModeButton::Colors AppearanceModeButton::Colors::of(const ColorTokens& token)
{
    return {.normalBackground = token.card,
            .normalBorder = token.strokeStrong,
            .normalText = token.textSecondary,
            .selectedBackground = token.cardSelected,
            .selectedBorder = token.accent,
            .selectedText = token.accent};
}

AppearanceModeButton::AppearanceModeButton(const Theme& look, AppearanceMode mode,
                                           std::function<void()> action, QWidget* parent)
    : Button(look, Kind::bordered, title(mode), parent), theme(look), shownMode(mode)
{
    setSymbol(symbolOf(mode), glyphSize);
    setCheckable(true);
    setAutoExclusive(true);
    // Qt sees to this only once one of them has the focus.
    const auto takeTab = [this](bool isChosen) {
        setFocusPolicy(isChosen ? Qt::TabFocus : Qt::NoFocus);
    };
    takeTab(false);
    connect(this, &QAbstractButton::toggled, this, takeTab);
    connect(this, &QAbstractButton::clicked, this, std::move(action));
}

QSize AppearanceModeButton::sizeHint() const
{
    // As wide as for the bolder text of the chosen one, so that nothing moves.
    const qreal text = QFontMetricsF(labelFont(theme, true)).horizontalAdvance(this->text());
    const int high =
        glyphSize + symbolGap + theme.lineHeight(TextStyle::caption) + 2 * leastPadding;
    return {std::max(leastFace.width(), qCeil(text) + 2 * leastPadding) + 2 * ringRoom,
            std::max(leastFace.height(), high) + 2 * ringRoom};
}

void AppearanceModeButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const Colors colors = Colors::of(theme.colors());
    const QRectF box = QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    const bool selected = isSelected();
    QColor background = selected ? colors.selectedBackground : colors.normalBackground;
    if (!selected)
        background = mixed(background, theme.colors().cardHover, hoverProgress());
    fillRounded(painter, box, radius, background);
    if (selected) {
        const qreal half = chosenWidth / 2;
        painter.setPen(QPen(colors.selectedBorder, chosenWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box.adjusted(half, half, -half, -half), radius - half,
                                radius - half);
    } else {
        strokeRounded(painter, box, radius, colors.normalBorder);
    }

    const QColor color = selected ? colors.selectedText : colors.normalText;
    const int line = theme.lineHeight(TextStyle::caption);
    const qreal top = box.y() + (box.height() - glyphSize - symbolGap - line) / 2;
    Icon(symbol()).paint(painter, {box.center().x() - glyphSize / 2.0, top}, glyphSize, color);
    paintLine(painter, QRectF(box.x(), top + glyphSize + symbolGap, box.width(), line), text(),
              labelFont(theme, selected), color, Qt::AlignHCenter);
    if (isRingShown())
        paintRing(painter, box, radius);
}

} // namespace vellumry
