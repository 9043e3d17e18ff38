#pragma once

#include <QAccessible>

class QWidget;

namespace vellumry {

/// Tells screen readers what a widget is which the toolkit takes for a mere area. To be called
/// before anybody asks for it: in the constructor.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// From now on a screen reader that toggles one of the program's checkable buttons clicks it.
void installAccessibleRoles();

} // namespace vellumry
