#pragma once

#include <initializer_list>

class QVBoxLayout;
class QWidget;

namespace vellumry {

class Button;

/// The measures that the small sheets share.
namespace SheetLayout {

/// Gives the sheet the width and the margins of a small one, and a column, without spacing, for
/// what stands above its buttons.
[[nodiscard]] QVBoxLayout* smallSheet(QWidget& sheet);

/// Adds the buttons of a small sheet at the right below, `gap` under what is above them.
void addFooter(const QWidget& sheet, std::initializer_list<Button*> buttons, int gap);

} // namespace SheetLayout

} // namespace vellumry
