#pragma once

#include "platform/RandomSource.h"

#include <cstddef>
#include <sys/types.h>

namespace vellumry {

/// The kernel's generator, through getrandom(2). Waits while the kernel has not gathered its seed
/// yet, which can only be in the first moments after the machine's start.
class KernelRandomSource final : public RandomSource {
public:
    /// As the manual page of getrandom tells it; tests put failures in its place.
    using Call = ssize_t (*)(void* buffer, size_t count, unsigned flags);

    KernelRandomSource();
    explicit KernelRandomSource(Call call) : getRandom(call) {}

    void fill(RandomWord& word) override;

private:
    Call getRandom;
};

} // namespace vellumry
