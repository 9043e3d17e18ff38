#include "hotkey/makeHotKeyBackend.h"

#include "hotkey/NullHotKeyBackend.h"
#include "hotkey/X11HotKeyBackend.h"

#include <utility>

namespace vellumry::hotkey {

std::unique_ptr<HotKeyBackend> makeHotKeyBackend(MainThreadExecutor executor,
                                                 PortalHotKeyBackend::Name name)
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return std::make_unique<PortalHotKeyBackend>(std::move(executor), std::move(name));
    if (auto x11 = X11HotKeyBackend::connect(std::move(executor)))
        return x11;
    return std::make_unique<NullHotKeyBackend>();
}

} // namespace vellumry::hotkey
