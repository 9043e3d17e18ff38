#include "views/common/AccessibleRole.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QSet>
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

/// A button of the program's. The toolkit's own interface changes what a checkable one shows when a
/// screen reader toggles it, but it is clicks that are answered.
class ButtonInterface final : public QAccessibleWidget {
public:
    explicit ButtonInterface(QAbstractButton& widget)
        : QAccessibleWidget(&widget, QAccessible::Button), button(widget)
    {
    }

    // Asked for each time: the interface is there before the button's constructor ends.
    [[nodiscard]] QAccessible::Role role() const override
    {
        if (!button.isCheckable())
            return QAccessible::Button;
        return button.autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString given = QAccessibleWidget::text(kind);
        return given.isEmpty() && kind == QAccessible::Name ? button.text() : given;
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button.isCheckable();
        state.checked = button.isChecked();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        return QStringList(click()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override
    {
        if (name == click())
            button.click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    [[nodiscard]] const QString& click() const
    {
        return button.isCheckable() ? toggleAction() : pressAction();
    }

    QAbstractButton& button;
};

/// The classes of buttons that are the program's own.
QSet<QString>& ownButtons()
{
    static QSet<QString> names;
    return names;
}

QAccessibleInterface* makeRoleInterface(const QString& className, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    if (ownButtons().contains(className))
        return new ButtonInterface(*qobject_cast<QAbstractButton*>(object));
    const QVariant role = object->property(roleKey);
    return role.isValid() ? new RoleInterface(static_cast<QWidget*>(object),
                                              static_cast<QAccessible::Role>(role.toInt()))
                          : nullptr;
}

void installFactory()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeRoleInterface);
        return true;
    }();
    (void)isInstalled;
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role)
{
    installFactory();
    widget.setProperty(roleKey, int(role));
}

void makeAccessibleByClicks(const QMetaObject& buttonClass)
{
    installFactory();
    ownButtons().insert(QString::fromLatin1(buttonClass.className()));
}

void announce(QWidget& widget)
{
    QAccessibleEvent alert(&widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace vellumry
