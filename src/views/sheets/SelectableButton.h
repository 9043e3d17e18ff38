#pragma once

#include "views/common/HoverFade.h"
#include "views/common/Theme.h"

#include <QAbstractButton>

namespace vellumry {

/// The common part of what stands among others to be chosen: rows and cards. Whoever shows it says
/// what is selected; a click changes nothing by itself. Space clicks; Return goes to the sheet.
class SelectableButton : public QAbstractButton {
    Q_OBJECT

public:
    /// The room around it for the focus line.
    static constexpr int ringRoom = 3;

    void setSelected(bool isSelected);
    [[nodiscard]] bool isSelected() const { return isChecked(); }
    [[nodiscard]] bool isRingShown() const { return hasFocus() && ringShown; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    /// The theme outlives the button.
    SelectableButton(const Theme& theme, const QString& name, QWidget* parent);

    [[nodiscard]] const Theme& look() const { return appearance; }
    [[nodiscard]] QRectF face() const;
    [[nodiscard]] qreal hoverProgress() const { return hover->progress(); }
    /// A bordered ground and the focus line; dims what follows while disabled.
    void paintCard(QPainter& painter) const;
    void paintRing(QPainter& painter, int radius) const;

    void nextCheckState() override {}
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const Theme& appearance;
    HoverFade* hover;
    bool ringShown = false;
};

} // namespace vellumry
