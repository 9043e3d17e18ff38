#pragma once

#include "palette/ClipboardServiceProtocol.h"

namespace vellumry {

class Pasteboard;

/// The clipboard of the desktop.
class ClipboardService final : public ClipboardServiceProtocol {
public:
    /// `desktopPasteboard` outlives the service.
    explicit ClipboardService(Pasteboard& desktopPasteboard);

    void copy(const QString& text) override;
    void copySecret(const QString& text) override;

private:
    Pasteboard& pasteboard;
};

} // namespace vellumry
