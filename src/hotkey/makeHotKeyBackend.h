#pragma once

#include "hotkey/HotKeyBackend.h"

#include <memory>

namespace vellumry::hotkey {

/// The backend for the window system that this process finds itself in: an X server if DISPLAY
/// names one that answers, otherwise a backend that refuses everything. `executor` brings presses
/// and releases to the main thread. Takes a millisecond and needs no toolkit, so that the hot key
/// can be ready before the windows are.
[[nodiscard]] std::unique_ptr<HotKeyBackend> makeHotKeyBackend(MainThreadExecutor executor);

} // namespace vellumry::hotkey
