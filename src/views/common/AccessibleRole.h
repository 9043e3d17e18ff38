#pragma once

#include <QAccessible>

class QWidget;

namespace vellumry {

/// Tells screen readers what a widget is which the toolkit takes for a mere area. To be called
/// before anybody asks for it: in the constructor.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// From now on screen readers press and toggle the buttons of that class, and of those below it, by
/// clicks. To be called by its constructor, first of all.
void makeAccessibleByClicks(const QMetaObject& buttonClass);

/// Tells screen readers of a widget that has something to say for which nobody asked.
void announce(QWidget& widget);

} // namespace vellumry
