#include "views/common/AccessibleRole.h"

#include <QAbstractButton>
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

/// A button that is one of a choice, or on or off. The toolkit's own changes what it shows when a
/// screen reader toggles it, but it is clicks that are answered.
class ChoiceInterface final : public QAccessibleWidget {
public:
    explicit ChoiceInterface(QAbstractButton& widget)
        : QAccessibleWidget(&widget, widget.autoExclusive() ? QAccessible::RadioButton
                                                            : QAccessible::CheckBox),
          button(widget)
    {
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString given = QAccessibleWidget::text(kind);
        return given.isEmpty() && kind == QAccessible::Name ? button.text() : given;
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = button.isChecked();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        return QStringList(toggleAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override
    {
        if (name == toggleAction())
            button.click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QAbstractButton& button;
};

QAccessibleInterface* makeRoleInterface(const QString&, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto* button = qobject_cast<QAbstractButton*>(object);
    if (button && button->isCheckable())
        return new ChoiceInterface(*button);
    const QVariant role = object->property(roleKey);
    return role.isValid() ? new RoleInterface(static_cast<QWidget*>(object),
                                              static_cast<QAccessible::Role>(role.toInt()))
                          : nullptr;
}

} // namespace

void installAccessibleRoles()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeRoleInterface);
        return true;
    }();
    (void)isInstalled;
}

void setAccessibleRole(QWidget& widget, QAccessible::Role role)
{
    installAccessibleRoles();
    widget.setProperty(roleKey, int(role));
}

} // namespace vellumry
