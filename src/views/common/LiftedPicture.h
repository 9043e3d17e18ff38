#pragma once

#include "views/common/Theme.h"

#include <QPixmap>
#include <QWidget>

namespace vellumry {

/// What the person drags: a picture with a shadow that follows the pointer over the whole window.
class LiftedPicture : public QWidget {
    Q_OBJECT

public:
    /// Lifts `picture` off `place`, in coordinates of `source`, where the pointer took hold of it
    /// at `grip`. The theme outlives it.
    LiftedPicture(const Theme& theme, QWidget& source, const QPixmap& picture, const QRect& place,
                  const QPoint& grip, int radius);

    /// Brings it to the pointer, in screen coordinates.
    void follow(const QPoint& pointer);
    /// Takes the picture away and deletes it later, so that this may be while its window hides.
    void putDown();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QPixmap picture;
    QPoint hold; ///< from the picture's corner to the pointer
    int radius;
};

} // namespace vellumry
