#include "views/common/AccessibleRow.h"

#include <QAccessibleWidget>

namespace vellumry {

namespace {

class RowInterface final : public QAccessibleWidget {
public:
    explicit RowInterface(AccessibleRow& widget)
        : QAccessibleWidget(&widget, QAccessible::ListItem), row(widget)
    {
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = row.isSelected();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }

    void doAction(const QString& name) override
    {
        if (name == pressAction())
            row.press();
    }

private:
    AccessibleRow& row;
};

QAccessibleInterface* makeRowInterface(const QString&, QObject* object)
{
    auto* row = qobject_cast<AccessibleRow*>(object);
    return row ? new RowInterface(*row) : nullptr;
}

} // namespace

AccessibleRow::AccessibleRow(QWidget* parent) : QWidget(parent)
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeRowInterface);
        return true;
    }();
    (void)isInstalled;
}

void AccessibleRow::setSelected(bool isSelected)
{
    if (selected == isSelected)
        return;
    selected = isSelected;
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace vellumry
