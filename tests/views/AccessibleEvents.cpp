#include "views/AccessibleEvents.h"

// Stands before the toolkit's own, which tells nobody anything until a screen reader has asked for
// it on a real desktop.
void QAccessible::updateAccessibility(QAccessibleEvent* event)
{
    vellumry::test::AccessibleEvents::note(*event);
}
