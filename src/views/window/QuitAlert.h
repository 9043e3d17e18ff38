#pragma once

#include "library/Termination.h"

#include <optional>

namespace vellumry {

class SheetHost;
class Theme;

/// Puts the question about drafts before the end over the contents of a window, and runs an event
/// loop until it is answered. Returns the position of the button; nothing if the window went away
/// under the question. Escape is the last button.
[[nodiscard]] std::optional<qsizetype> askBeforeQuit(SheetHost& sheets, const Theme& theme,
                                                     const QuitQuestion& question);

} // namespace vellumry
