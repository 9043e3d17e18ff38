#pragma once

#include "views/common/HoverFade.h"
#include "views/common/Theme.h"

#include <QAbstractButton>

namespace vellumry {

/// The button that names the collection of a snippet and opens the choice of another.
class CollectionChip : public QAbstractButton {
    Q_OBJECT

public:
    /// The theme outlives the chip.
    explicit CollectionChip(const Theme& theme, QWidget* parent = nullptr);

    void setCollection(const QString& name, const QColor& color);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const Theme& theme;
    QColor dot;
    HoverFade* hover;
};

} // namespace vellumry
