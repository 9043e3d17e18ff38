#include "views/common/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace vellumry {

namespace {

constexpr auto roleKey = "accessibleRole";

class RoleInterface final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = role() == QAccessible::Dialog;
        return state;
    }
};

QAccessibleInterface* makeRoleInterface(const QString&, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    const QVariant role = object->property(roleKey);
    return role.isValid() ? new RoleInterface(static_cast<QWidget*>(object),
                                              static_cast<QAccessible::Role>(role.toInt()))
                          : nullptr;
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role)
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeRoleInterface);
        return true;
    }();
    (void)isInstalled;
    widget.setProperty(roleKey, int(role));
}

} // namespace vellumry
