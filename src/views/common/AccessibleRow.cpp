#include "views/common/AccessibleRow.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace vellumry {

namespace {

class RowInterface final : public QAccessibleWidget {
public:
    explicit RowInterface(QWidget* row) : QAccessibleWidget(row, QAccessible::ListItem) {}

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = widget()->property(AccessibleRow::selectedKey).toBool();
        return state;
    }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    if (object && object->isWidgetType() && object->property(AccessibleRow::selectedKey).isValid())
        return new RowInterface(static_cast<QWidget*>(object));
    return nullptr;
}

} // namespace

void AccessibleRow::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    (void)isInstalled;
}

} // namespace vellumry
