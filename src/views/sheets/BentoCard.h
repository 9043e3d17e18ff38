#pragma once

#include "views/common/Theme.h"

#include <QColor>
#include <QStringList>
#include <QWidget>

#include <optional>
#include <vector>

class QVariantAnimation;

namespace vellumry {

/// A card of the shortcuts sheet: what it is about, and rows of keys with what they do. It grows a
/// little under the pointer.
class BentoCard : public QWidget {
    Q_OBJECT

public:
    /// The room around the card to grow into.
    static constexpr int growRoom = 4;

    struct Row {
        /// Alternatives of keys to press together, such as "Tab" or "↓".
        QList<QStringList> keys;
        QString label;
    };

    struct Contents {
        QString symbol = {}; ///< none for the hero
        QColor accent;
        QString tag = {};
        QString title;
        QString text = {}; ///< under the title of the hero
        std::vector<Row> rows;
        QString tipSymbol = {};
        QString tip = {};
    };

    /// The theme outlives the card.
    BentoCard(const Theme& theme, const Contents& contents, QWidget* parent);

    [[nodiscard]] const Contents& contents() const { return shown; }
    [[nodiscard]] qreal scale() const;

    /// The width below which a text would be cut.
    [[nodiscard]] int leastWidth() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int wide) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    [[nodiscard]] bool isHero() const { return shown.symbol.isEmpty(); }
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] int titleHeight() const;
    [[nodiscard]] int tagHeight() const;
    [[nodiscard]] int tipHeight() const;
    [[nodiscard]] qreal keysWidth(const Row& row) const;
    [[nodiscard]] qreal rowsWidth() const;
    [[nodiscard]] qreal heroTitleWidth() const;
    [[nodiscard]] qreal heroTextsHeight(qreal wide) const;
    /// Whether the hero has its rows beside its texts, not below.
    [[nodiscard]] bool isSideBySide(qreal innerWidth) const;
    void grow(bool isHovered);
    void paintTag(QPainter& painter, const QPointF& topLeft, const QColor& ground,
                  const QColor& text) const;
    [[nodiscard]] qreal tagWidth() const;
    void paintHero(QPainter& painter, const QRectF& inner) const;
    void paintHeroTexts(QPainter& painter, const QRectF& room) const;
    void paintTopic(QPainter& painter, const QRectF& inner) const;
    void paintRows(QPainter& painter, QRectF row) const;

    const Theme& theme;
    Contents shown;
    QVariantAnimation* growing;
};

} // namespace vellumry
