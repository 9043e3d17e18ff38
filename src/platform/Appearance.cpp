#include "platform/Appearance.h"

#include <QPalette>

namespace vellumry {

ColorScheme colorSchemeOf(const QPalette& palette)
{
    const int text = qGray(palette.color(QPalette::WindowText).rgb());
    const int window = qGray(palette.color(QPalette::Window).rgb());
    return text > window ? ColorScheme::dark : ColorScheme::light;
}

} // namespace vellumry
