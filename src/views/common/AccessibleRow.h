#pragma once

class QWidget;

namespace vellumry {

/// How a row that is a widget of its own tells a screen reader that it is a row, and whether it is
/// selected.
namespace AccessibleRow {

/// To be called once for each row, before anything else is told about it.
void install(QWidget& row);
void setSelected(QWidget& row, bool selected);

} // namespace AccessibleRow

} // namespace vellumry
