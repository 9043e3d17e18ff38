#pragma once

class QWidget;

namespace vellumry {

/// Gives the heir the focus of the window if the widget, or something within it, has it; for a
/// widget that is about to be hidden. Qt would hand the focus on to whatever Tab reaches next, and
/// the next Space or Return would press that. Returns whether the focus was there. Main thread
/// only.
bool inheritFocus(const QWidget& widget, QWidget& heir);

} // namespace vellumry
