#include "views/common/Motion.h"

#include <QStyle>
#include <QWidget>

namespace vellumry {

std::chrono::milliseconds animationTime(const QWidget& widget, std::chrono::milliseconds wanted)
{
    const int hint =
        widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget);
    return hint == 0 ? std::chrono::milliseconds(0) : wanted;
}

} // namespace vellumry
