#include "views/sheets/OptionRow.h"

#include "views/common/Icon.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/sheets/DriveLook.h"

#include <QPainter>
#include <QStringBuilder>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int padding = 12;
constexpr int gap = 11;
constexpr int radius = 8;
constexpr int tileSide = 32;
constexpr int badgeHeight = 18;
constexpr int badgePadding = 7;
constexpr int badgeGap = 8;
constexpr int leastTextPadding = 8;  ///< above and below together, within a border
constexpr int leastPlainPadding = 2; ///< likewise, without one

} // namespace

OptionRow::OptionRow(const Theme& theme, const Contents& contents, const Style& rowStyle,
                     std::function<void()> action, QWidget* parent)
    : SelectableButton(theme, contents.title, parent), style(rowStyle)
{
    setContents(contents);
    connect(this, &QAbstractButton::clicked, this, std::move(action));
}

void OptionRow::setContents(const Contents& contents)
{
    shown = contents;
    setPlainText(*this, shown.title);
    setAccessibleName(shown.badge.isEmpty() ? shown.title
                                            : QString(shown.title % u", " % shown.badge));
    setAccessibleDescription(shown.detail);
    // A long path is cut in the row.
    setToolTip(shown.isPath ? toolTipText(shown.detail) : QString());
    update();
}

QString OptionRow::mark() const
{
    return isSelected() ? style.selectedMark : style.plainMark;
}

void OptionRow::setTrailing(QWidget* widget)
{
    trailing = widget;
    if (trailing) {
        trailing->setParent(this);
        placeTrailing();
        trailing->show();
    }
    update();
}

void OptionRow::placeTrailing()
{
    trailing->resize(trailing->sizeHint());
    trailing->move(width() - ringRoom - padding / 2 - trailing->width(),
                   (height() - trailing->height()) / 2);
}

TextStyle OptionRow::detailStyle() const
{
    return shown.isPath ? TextStyle::path : TextStyle::label;
}

QSize OptionRow::sizeHint() const
{
    const int texts = look().lineHeight(style.titleStyle) + look().lineHeight(detailStyle());
    return {0, std::max(style.height,
                        texts + (style.isBordered ? leastTextPadding : leastPlainPadding)) +
                   2 * ringRoom};
}

void OptionRow::resizeEvent(QResizeEvent*)
{
    if (trailing)
        placeTrailing();
}

void OptionRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintGround(painter);
    QRectF room = face().adjusted(padding, 0, -padding, 0);
    if (trailing)
        room.setRight(trailing->x());
    if (style.isMarkFirst) {
        paintMark(painter, room.left());
        room.setLeft(room.left() + style.markSize + gap);
    } else if (!mark().isEmpty()) {
        paintMark(painter, room.right() - style.markSize);
        room.setRight(room.right() - style.markSize - gap);
    }
    room.setLeft(paintSymbol(painter, room.left()) + gap);
    paintTexts(painter, room);
}

void OptionRow::paintGround(QPainter& painter) const
{
    if (style.isBordered) {
        paintCard(painter);
        return;
    }
    const ColorTokens& token = look().colors();
    paintRing(painter, radius);
    QColor fill = isSelected() ? token.accentTint : token.fill;
    if (!isSelected())
        fill.setAlphaF(float(fill.alphaF() * hoverProgress()));
    fillRounded(painter, face(), radius, fill);
}

qreal OptionRow::paintSymbol(QPainter& painter, qreal x) const
{
    const qreal y = face().center().y();
    if (shown.isTiled) {
        paintTile(painter, look(), QRectF(x, y - tileSide / 2.0, tileSide, tileSide), shown.symbol,
                  shown.tileColor);
        return x + tileSide;
    }
    const ColorTokens& token = look().colors();
    Icon(shown.symbol)
        .paint(painter, {x, y - style.symbolSize / 2.0}, style.symbolSize,
               isSelected() ? token.accent : token.textSecondary);
    return x + style.symbolSize;
}

void OptionRow::paintTexts(QPainter& painter, const QRectF& room) const
{
    const ColorTokens& token = look().colors();
    const int titleHeight = look().lineHeight(style.titleStyle);
    const int detailHeight = look().lineHeight(detailStyle());
    const qreal top = room.center().y() - (titleHeight + detailHeight) / 2.0;
    const QFont titleFont = look().font(style.titleStyle);
    QRectF titleRoom(room.x(), top, room.width(), titleHeight);
    if (!shown.badge.isEmpty()) {
        const QFont font = look().font(TextStyle::section);
        const qreal wide =
            std::ceil(QFontMetricsF(font).horizontalAdvance(shown.badge)) + 2 * badgePadding;
        const qreal titleWidth =
            std::min(std::ceil(QFontMetricsF(titleFont).horizontalAdvance(shown.title)) + 1,
                     room.width() - badgeGap - wide);
        titleRoom.setWidth(titleWidth);
        const QRectF badge(titleRoom.right() + badgeGap, titleRoom.center().y() - badgeHeight / 2.0,
                           wide, badgeHeight);
        fillRounded(painter, badge, badgeHeight / 2.0, token.accentTint);
        paintLine(painter, badge, shown.badge, font, token.accent, Qt::AlignHCenter);
    }
    paintLine(painter, titleRoom, shown.title, titleFont, token.textPrimary);
    paintLine(painter, {room.x(), top + titleHeight, room.width(), qreal(detailHeight)},
              shown.detail, look().font(detailStyle()), token.textSecondary);
}

void OptionRow::paintMark(QPainter& painter, qreal x) const
{
    if (mark().isEmpty())
        return;
    const ColorTokens& token = look().colors();
    Icon(mark()).paint(painter, {x, face().center().y() - style.markSize / 2.0}, style.markSize,
                       isSelected() ? token.accent : token.textTertiary);
}

} // namespace vellumry
