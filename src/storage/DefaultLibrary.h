#pragma once

#include "core/Date.h"
#include "models/DefaultSnippetsContainer.h"
#include "models/VellumryData.h"

namespace vellumry {

/// The library that a newcomer begins with, made of the resource: with fresh ids at each call, and
/// the clock's time.
[[nodiscard]] VellumryData defaultLibrary(const DefaultSnippetsContainer& resource,
                                          const Clock& clock);

} // namespace vellumry
