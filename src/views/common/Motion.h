#pragma once

#include <chrono>

class QWidget;

namespace vellumry {

/// The time that an animation of this widget takes: `wanted`, or nothing where the person has
/// switched animations off.
[[nodiscard]] std::chrono::milliseconds animationTime(const QWidget& widget,
                                                      std::chrono::milliseconds wanted);

} // namespace vellumry
