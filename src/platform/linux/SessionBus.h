#pragma once

namespace vellumry {

/// Whether the session has a bus that can be reached. Asks only for its address, so that no bus is
/// started by the question; the connection may still fail.
[[nodiscard]] bool hasSessionBus();

} // namespace vellumry
