#include "views/editor/SubtitleTextField.h"

namespace vellumry {

namespace {

constexpr int fieldHeight = 26;

} // namespace

SubtitleTextField::SubtitleTextField(const Theme& scheme, QWidget* parent)
    : BareTextField(scheme,
                    {.style = TextStyle::body,
                     .color = &ColorTokens::textSecondary,
                     .height = fieldHeight,
                     .hasFocusFrame = true},
                    QStringLiteral("Add a subtitle (optional)"), longest, parent)
{
}

} // namespace vellumry
