#include "views/editor/SearchTextField.h"

namespace vellumry {

namespace {

constexpr int fieldHeight = 28;

} // namespace

SearchTextField::SearchTextField(const Theme& scheme, QWidget* parent)
    : BareTextField(scheme, {.style = TextStyle::body, .height = fieldHeight},
                    QStringLiteral("Search in content..."), 0, parent)
{
}

} // namespace vellumry
