#include "views/common/AccessibleRow.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace vellumry::AccessibleRow {

namespace {

/// The property that marks a widget as a row and tells whether it is selected.
constexpr auto selectedKey = "isSelectedRow";

class RowInterface final : public QAccessibleWidget {
public:
    explicit RowInterface(QWidget* row) : QAccessibleWidget(row, QAccessible::ListItem) {}

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = widget()->property(selectedKey).toBool();
        return state;
    }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    if (object && object->isWidgetType() && object->property(selectedKey).isValid())
        return new RowInterface(static_cast<QWidget*>(object));
    return nullptr;
}

} // namespace

void install(QWidget& row)
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    (void)isInstalled;
    row.setProperty(selectedKey, false);
}

void setSelected(QWidget& row, bool selected)
{
    if (row.property(selectedKey).toBool() == selected)
        return;
    row.setProperty(selectedKey, selected);
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(&row, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace vellumry::AccessibleRow
