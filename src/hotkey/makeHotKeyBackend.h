#pragma once

#include "hotkey/HotKeyBackend.h"
#include "hotkey/PortalHotKeyBackend.h"

#include <memory>

namespace vellumry::hotkey {

/// The backend for the window system that this process finds itself in. In a Wayland session the
/// desktop's portal, also where an X server is at hand, whose keys tell nothing of what is typed
/// into the other windows; `name` is for it. Otherwise an X server if DISPLAY names one that
/// answers, or else a backend that refuses everything. `executor` brings presses and releases to
/// the main thread. Takes a millisecond and needs no application, so that the hot key can be ready
/// before the windows are.
[[nodiscard]] std::unique_ptr<HotKeyBackend> makeHotKeyBackend(MainThreadExecutor executor,
                                                               PortalHotKeyBackend::Name name);

} // namespace vellumry::hotkey
