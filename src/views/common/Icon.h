#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

class QPainter;
class QPointF;

namespace vellumry {

/// The program's symbols, drawn from vectors for each size and scale. Main thread only.
class Icon {
public:
    /// `name` is that of a symbol among the resources.
    explicit Icon(QString name) : symbolName(std::move(name)) {}

    /// The symbol in one colour, `size` device-independent pixels wide and high, sharp at the
    /// given device pixel ratio. A symbol with colours of its own keeps them. Pictures are cached.
    [[nodiscard]] QPixmap pixmap(int size, const QColor& color, qreal devicePixelRatio) const;

    /// Paints the symbol with its upper left corner at `position`.
    void paint(QPainter& painter, const QPointF& position, int size, const QColor& color) const;

private:
    QString symbolName;
};

} // namespace vellumry
