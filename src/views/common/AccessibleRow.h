#pragma once

#include <QWidget>

namespace vellumry {

/// A widget that is a row among others: to a screen reader an item of a list, which can be selected
/// and pressed.
class AccessibleRow : public QWidget {
    Q_OBJECT

public:
    explicit AccessibleRow(QWidget* parent);

    [[nodiscard]] bool isSelected() const { return selected; }
    void setSelected(bool isSelected);

    /// Does what a click upon the row does.
    virtual void press() = 0;

private:
    bool selected = false;
};

} // namespace vellumry
