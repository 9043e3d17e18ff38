#include "views/editor/TitleTextField.h"

namespace vellumry {

namespace {

constexpr int fieldHeight = 36;

} // namespace

TitleTextField::TitleTextField(const Theme& theme, QWidget* parent)
    : BareTextField(theme,
                    {.style = TextStyle::title, .height = fieldHeight, .hasFocusFrame = true},
                    QStringLiteral("Snippet Title"), longest, parent)
{
}

} // namespace vellumry
