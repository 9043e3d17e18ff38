#pragma once

#include "views/common/Theme.h"

#include <QStringList>
#include <QWidget>

namespace vellumry {

/// A combination of keys as the caps that one presses, such as "Ctrl" and "N". Small, for lists.
class KeyCaps : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the caps.
    KeyCaps(const Theme& theme, const QStringList& keys, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override { return sizeOf(theme, keys); }

    /// For who draws caps among other things.
    [[nodiscard]] static QSize sizeOf(const Theme& theme, const QStringList& keys);
    static void paint(QPainter& painter, const Theme& theme, const QStringList& keys,
                      const QPointF& position);

    struct CapColors {
        QColor background;
        QColor border;
        QColor text;
    };

    /// A single cap that is at least `side` wide and high.
    [[nodiscard]] static QSize capSize(const Theme& theme, const QString& key, int side);
    static void paintCap(QPainter& painter, const Theme& theme, const QRectF& cap,
                         const QString& key, const CapColors& colors);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QStringList keys;
};

} // namespace vellumry
