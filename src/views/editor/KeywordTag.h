#pragma once

#include "views/common/HoverFade.h"
#include "views/common/Theme.h"

#include <QAbstractButton>
#include <QVariantAnimation>

namespace vellumry {

/// A search term with a cross that removes it. By the keyboard the whole tag is that button.
class KeywordTag : public QAbstractButton {
    Q_OBJECT

public:
    /// The theme outlives the tag.
    KeywordTag(const Theme& theme, const QString& text, QWidget* parent = nullptr);

    /// Lets the tag come up, as one that was just added.
    void appear();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QRect crossRect() const;

Q_SIGNALS:
    void removeRequested();

protected:
    bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const Theme& theme;
    HoverFade* hover;
    QVariantAnimation* appearing;
};

} // namespace vellumry
