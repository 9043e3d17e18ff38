#include "views/sheets/BentoCard.h"

#include "views/common/Icon.h"
#include "views/common/KeyCaps.h"
#include "views/common/Motion.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QHash>
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
constexpr int heroTextLines = 2;
constexpr qreal hoveredScale = 1.01;
constexpr std::chrono::milliseconds growTime{150};
constexpr QColor tipColor(0xFF, 0x95, 0x00);

/// What a screen reader says of an arrow.
QString spoken(const QString& key)
{
    static const QHash<QString, QString> names{{QStringLiteral("↑"), QStringLiteral("Up")},
                                               {QStringLiteral("↓"), QStringLiteral("Down")},
                                               {QStringLiteral("←"), QStringLiteral("Left")},
                                               {QStringLiteral("→"), QStringLiteral("Right")}};
    return names.value(key, key);
}

QString spoken(const BentoCard::Row& row)
{
    QStringList alternatives;
    for (const QStringList& keys : row.keys) {
        QStringList names;
        for (const QString& key : keys)
            names.append(spoken(key));
        alternatives.append(names.join(u'+'));
    }
    return row.label % u": " % alternatives.join(QStringLiteral(" or "));
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

QSize BentoCard::sizeHint() const
{
    int high = int(shown.rows.size()) * rowHeight();
    if (isHero()) {
        const int texts = tagHeight() + 4 + theme.lineHeight(TextStyle::sheetTitle) +
                          heroTextLines * theme.lineHeight(TextStyle::label);
        high = std::max(high, texts);
    } else {
        high += titleHeight() + titleGap;
        if (!shown.tip.isEmpty())
            high += tipGap + tipHeight();
    }
    return {0, high + 2 * (margin + growRoom)};
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
    const ColorTokens& token = theme.colors();
    const qreal half = inner.width() / 2;
    const int title = theme.lineHeight(TextStyle::sheetTitle);
    const int text = heroTextLines * theme.lineHeight(TextStyle::label);
    QRectF left(inner.x(), inner.center().y() - (tagHeight() + 4 + title + text) / 2.0,
                half - margin, tagHeight());
    paintTag(painter, left.topLeft(), shown.accent, Qt::white);
    left = QRectF(left.x(), left.bottom() + 4, left.width(), title);
    paintLine(painter, left, shown.title, theme.font(TextStyle::sheetTitle), token.textPrimary);
    painter.setFont(theme.font(TextStyle::label));
    painter.setPen(token.textSecondary);
    painter.drawText(QRectF(left.x(), left.bottom(), left.width(), text),
                     int(Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap), shown.text);
    paintRows(painter, {inner.x() + half + margin / 2.0, inner.y(), half - margin / 2.0, 0});
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
    paintLine(painter, tip.adjusted(tipPadding + tipSymbolSize + 8, 0, -tipPadding, 0), shown.tip,
              theme.font(TextStyle::label), token.textSecondary);
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
