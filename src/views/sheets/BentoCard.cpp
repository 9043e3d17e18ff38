#include "views/sheets/BentoCard.h"

#include "views/common/Icon.h"
#include "views/common/KeyCaps.h"
#include "views/common/KeyboardText.h"
#include "views/common/Motion.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QStringBuilder>
#include <QVariantAnimation>
#include <QtMath>

#include <algorithm>

namespace vellumry {

namespace {

constexpr int margin = 20;
constexpr int radius = 14;
constexpr int designedRow = 26;
constexpr int symbolSize = 20;
constexpr int symbolGap = 9;
constexpr int titleGap = 8;
constexpr int designedTag = 18;
constexpr int tagPadding = 8;
constexpr int slashGap = 6;
constexpr int tipGap = 10;
constexpr int designedTip = 34;
constexpr int tipPadding = 10;
constexpr int tipRadius = 8;
constexpr int tipSymbolSize = 16;
constexpr int tipSymbolGap = 8;
constexpr int heroTagGap = 4;
constexpr int heroRowsGap = 12; ///< between its texts and the rows below
constexpr int plentyOfWidth = 10'000;
constexpr int outside = margin + BentoCard::growRoom;
constexpr qreal hoveredScale = 1.01;
constexpr std::chrono::milliseconds growTime{150};
constexpr QColor tipColor(0xFF, 0x95, 0x00);

QString spoken(const BentoCard::Row& row)
{
    QStringList alternatives;
    for (const QStringList& keys : row.keys) {
        QStringList names;
        for (const QString& key : keys)
            names.append(spokenCap(key));
        alternatives.append(names.join(u'+'));
    }
    return row.label % u": " % alternatives.join(QStringLiteral(" or "));
}

qreal widthOf(const Theme& theme, TextStyle style, const QString& text)
{
    return std::ceil(QFontMetricsF(theme.font(style)).horizontalAdvance(text)) + 1;
}

} // namespace

BentoCard::BentoCard(const Theme& look, const Contents& contents, QWidget* parent)
    : QWidget(parent), theme(look), shown(contents), growing(new QVariantAnimation(this))
{
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    QStringList lines{shown.text};
    for (const Row& row : shown.rows)
        lines.append(spoken(row));
    lines.append(shown.tip);
    lines.removeAll(QString());
    setAccessibleName(shown.title);
    setAccessibleDescription(lines.join(QStringLiteral(". ")));

    growing->setStartValue(1.0);
    growing->setEndValue(hoveredScale);
    growing->setEasingCurve(QEasingCurve::OutCubic);
    connect(growing, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

qreal BentoCard::scale() const
{
    return growing->currentValue().toReal();
}

int BentoCard::rowHeight() const
{
    return std::max(theme.rowHeight(designedRow, TextStyle::body),
                    KeyCaps::sizeOf(theme, {QString()}).height() + 6);
}

int BentoCard::titleHeight() const
{
    return theme.rowHeight(symbolSize, TextStyle::heading);
}

int BentoCard::tagHeight() const
{
    return theme.rowHeight(designedTag, TextStyle::section);
}

int BentoCard::tipHeight() const
{
    return theme.rowHeight(designedTip, TextStyle::label);
}

qreal BentoCard::keysWidth(const Row& row) const
{
    const QFontMetricsF metrics(theme.font(TextStyle::body));
    const qreal between = 2 * slashGap + std::ceil(metrics.horizontalAdvance(u'/'));
    qreal wide = -between;
    for (const QStringList& keys : row.keys)
        wide += KeyCaps::sizeOf(theme, keys).width() + between;
    return wide;
}

qreal BentoCard::rowsWidth() const
{
    qreal wide = 0;
    for (const Row& row : shown.rows)
        wide =
            std::max(wide, widthOf(theme, TextStyle::body, row.label) + slashGap + keysWidth(row));
    return wide;
}

qreal BentoCard::heroTitleWidth() const
{
    return widthOf(theme, TextStyle::sheetTitle, shown.title);
}

qreal BentoCard::heroTextsHeight(qreal wide) const
{
    return tagHeight() + heroTagGap + theme.lineHeight(TextStyle::sheetTitle) +
           wrappedHeight(shown.text, theme.font(TextStyle::label), wide);
}

bool BentoCard::isSideBySide(qreal innerWidth) const
{
    return heroTitleWidth() <= innerWidth / 2 - margin &&
           rowsWidth() <= innerWidth / 2 - margin / 2.0;
}

int BentoCard::leastWidth() const
{
    qreal inner = rowsWidth();
    if (isHero()) {
        inner = std::max(inner, heroTitleWidth());
    } else {
        qreal head = symbolSize + symbolGap + widthOf(theme, TextStyle::heading, shown.title);
        if (!shown.tag.isEmpty())
            head += symbolGap + tagWidth();
        inner = std::max(inner, head);
        if (!shown.tip.isEmpty())
            inner = std::max(inner, 2 * tipPadding + tipSymbolSize + tipSymbolGap +
                                        widthOf(theme, TextStyle::label, shown.tip));
    }
    return qCeil(inner) + 2 * outside;
}

QSize BentoCard::sizeHint() const
{
    return {0, heightForWidth(plentyOfWidth)};
}

int BentoCard::heightForWidth(int wide) const
{
    const int rows = int(shown.rows.size()) * rowHeight();
    if (isHero()) {
        const qreal inner = wide - 2 * outside;
        const qreal high = isSideBySide(inner)
                               ? std::max<qreal>(rows, heroTextsHeight(inner / 2 - margin))
                               : heroTextsHeight(inner) + heroRowsGap + rows;
        return qCeil(high) + 2 * outside;
    }
    const int tip = shown.tip.isEmpty() ? 0 : tipGap + tipHeight();
    return titleHeight() + titleGap + rows + tip + 2 * outside;
}

void BentoCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QPointF middle = QRectF(rect()).center();
    painter.translate(middle);
    painter.scale(scale(), scale());
    painter.translate(-middle);
    const QRectF card = QRectF(rect()).adjusted(growRoom, growRoom, -growRoom, -growRoom);
    fillRounded(painter, card, radius, theme.colors().card);
    strokeRounded(painter, card, radius, theme.colors().stroke);
    const QRectF inner = card.adjusted(margin, margin, -margin, -margin);
    if (isHero())
        paintHero(painter, inner);
    else
        paintTopic(painter, inner);
}

qreal BentoCard::tagWidth() const
{
    const QFontMetricsF metrics(theme.font(TextStyle::section));
    return std::ceil(metrics.horizontalAdvance(shown.tag)) + 2 * tagPadding;
}

void BentoCard::paintTag(QPainter& painter, const QPointF& topLeft, const QColor& ground,
                         const QColor& text) const
{
    const QRectF tag(topLeft, QSizeF(tagWidth(), tagHeight()));
    fillRounded(painter, tag, tag.height() / 2, ground);
    paintLine(painter, tag, shown.tag, theme.font(TextStyle::section), text, Qt::AlignHCenter);
}

void BentoCard::paintHero(QPainter& painter, const QRectF& inner) const
{
    const qreal half = inner.width() / 2;
    if (!isSideBySide(inner.width())) {
        paintHeroTexts(painter, inner);
        paintRows(painter, inner.adjusted(0, heroTextsHeight(inner.width()) + heroRowsGap, 0, 0));
        return;
    }
    const qreal texts = heroTextsHeight(half - margin);
    paintHeroTexts(painter, {inner.x(), inner.center().y() - texts / 2, half - margin, texts});
    paintRows(painter, {inner.x() + half + margin / 2.0, inner.y(), half - margin / 2.0, 0});
}

void BentoCard::paintHeroTexts(QPainter& painter, const QRectF& room) const
{
    const ColorTokens& token = theme.colors();
    paintTag(painter, room.topLeft(), shown.accent, Qt::white);
    const QRectF title(room.x(), room.y() + tagHeight() + heroTagGap, room.width(),
                       theme.lineHeight(TextStyle::sheetTitle));
    paintLine(painter, title, shown.title, theme.font(TextStyle::sheetTitle), token.textPrimary);
    paintWrapped(painter, {room.x(), title.bottom(), room.width(), room.bottom() - title.bottom()},
                 shown.text, theme.font(TextStyle::label), token.textSecondary);
}

void BentoCard::paintTopic(QPainter& painter, const QRectF& inner) const
{
    const ColorTokens& token = theme.colors();
    const QRectF head(inner.x(), inner.y(), inner.width(), titleHeight());
    Icon(shown.symbol)
        .paint(painter, {head.x(), head.center().y() - symbolSize / 2.0}, symbolSize, shown.accent);
    QRectF title = head.adjusted(symbolSize + symbolGap, 0, 0, 0);
    if (!shown.tag.isEmpty()) {
        const QPointF tag(head.right() - tagWidth(), head.center().y() - tagHeight() / 2.0);
        paintTag(painter, tag, token.fill, token.textSecondary);
        title.setRight(tag.x() - symbolGap);
    }
    paintLine(painter, title, shown.title, theme.font(TextStyle::heading), token.textPrimary);
    paintRows(painter, {inner.x(), head.bottom() + titleGap, inner.width(), 0});

    if (shown.tip.isEmpty())
        return;
    const qreal y = head.bottom() + titleGap + qreal(shown.rows.size()) * rowHeight() + tipGap;
    const QRectF tip(inner.x(), y, inner.width(), tipHeight());
    fillRounded(painter, tip, tipRadius, token.fill);
    Icon(shown.tipSymbol)
        .paint(painter, {tip.x() + tipPadding, tip.center().y() - tipSymbolSize / 2.0},
               tipSymbolSize, tipColor);
    paintLine(painter, tip.adjusted(tipPadding + tipSymbolSize + tipSymbolGap, 0, -tipPadding, 0),
              shown.tip, theme.font(TextStyle::label), token.textSecondary);
}

void BentoCard::paintRows(QPainter& painter, QRectF row) const
{
    const ColorTokens& token = theme.colors();
    const QFont font = theme.font(TextStyle::body);
    const qreal slash = std::ceil(QFontMetricsF(font).horizontalAdvance(u'/'));
    row.setHeight(rowHeight());
    for (const Row& each : shown.rows) {
        qreal x = row.right();
        for (auto keys = each.keys.crbegin(); keys != each.keys.crend(); ++keys) {
            if (keys != each.keys.crbegin()) {
                x -= slashGap + slash;
                paintLine(painter, {x, row.y(), slash + 1, row.height()}, QStringLiteral("/"), font,
                          token.textSecondary);
                x -= slashGap;
            }
            const QSize size = KeyCaps::sizeOf(theme, *keys);
            x -= size.width();
            KeyCaps::paint(painter, theme, *keys, {x, row.center().y() - size.height() / 2.0});
        }
        paintLine(painter, {row.x(), row.y(), x - slashGap - row.x(), row.height()}, each.label,
                  font, token.textSecondary);
        row.translate(0, row.height());
    }
}

void BentoCard::grow(bool isHovered)
{
    growing->setDirection(isHovered ? QVariantAnimation::Forward : QVariantAnimation::Backward);
    growing->setDuration(int(animationTime(*this, growTime).count()));
    growing->start();
}

void BentoCard::enterEvent(QEnterEvent*)
{
    grow(true);
}

void BentoCard::leaveEvent(QEvent*)
{
    grow(false);
}

} // namespace vellumry
