#pragma once

#include <chrono>

namespace vellumry {

/// Whether the session has a bus that can be reached. Asks only for its address, so that no bus is
/// started by the question; the connection may still fail.
[[nodiscard]] bool hasSessionBus();

/// Does without the session bus if it takes connections and answers none within `patience`, for
/// which whoever connects to it would wait for ever: from then on its address leads nowhere in this
/// process, so that the connection fails at once, and a line says so. Changes the environment, so
/// it belongs before the first connection and before there are threads that read it.
void avoidSilentSessionBus(std::chrono::milliseconds patience);

} // namespace vellumry
