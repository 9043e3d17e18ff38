#pragma once

#include "views/sheets/SelectableButton.h"

#include <QColor>
#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

/// One of several to choose from: a symbol, a title with a line under it, and a mark.
class OptionRow : public SelectableButton {
    Q_OBJECT

public:
    struct Contents {
        QString symbol;
        /// Of the tile that the symbol stands on; a symbol without a tile has none.
        std::optional<QColor> tileColor = std::nullopt;
        bool isTiled = false; ///< on a tile, a quiet one if it has no colour
        QString title;
        QString detail;
        bool isPath = false; ///< the detail is one
        QString badge = {};

        friend bool operator==(const Contents&, const Contents&) = default;
    };

    /// How the rows of a sheet look.
    struct Style {
        int height = 54;
        int symbolSize = 20; ///< without a tile
        int markSize = 20;
        QString selectedMark = QStringLiteral("checkmark.circle.fill");
        QString plainMark = {};
        bool isMarkFirst = false;
        bool isBordered = true;
        TextStyle titleStyle = TextStyle::bodyMedium;
    };

    /// The theme outlives the row.
    OptionRow(const Theme& theme, const Contents& contents, const Style& style,
              std::function<void()> action, QWidget* parent);

    void setContents(const Contents& contents);
    [[nodiscard]] const Contents& contents() const { return shown; }
    /// The name of the mark's symbol at present; empty for none.
    [[nodiscard]] QString mark() const;
    /// Something of its own at the right end of the row, which becomes its child; none to leave the
    /// one there is to another row.
    void setTrailing(QWidget* widget);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeTrailing();
    [[nodiscard]] TextStyle detailStyle() const;
    void paintGround(QPainter& painter) const;
    [[nodiscard]] qreal paintSymbol(QPainter& painter, qreal x) const;
    void paintTexts(QPainter& painter, const QRectF& room) const;
    void paintMark(QPainter& painter, qreal x) const;

    Contents shown;
    Style style;
    QWidget* trailing = nullptr;
};

} // namespace vellumry
