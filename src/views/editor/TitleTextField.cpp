#include "views/editor/TitleTextField.h"

namespace vellumry {

namespace {

constexpr int fieldHeight = 36;

} // namespace

TitleTextField::TitleTextField(const Theme& scheme, QWidget* parent)
    : BareTextField(scheme,
                    {.style = TextStyle::title, .height = fieldHeight, .hasFocusFrame = true},
                    QStringLiteral("Snippet Title"), longest, parent)
{
}

} // namespace vellumry
