#pragma once

#include "platform/Pasteboard.h"

namespace vellumry {

/// The clipboard of the desktop through Qt. The primary selection is left alone.
class ClipboardPasteboard final : public Pasteboard {
public:
    void setString(const QString& text) override;
    void setSecretString(const QString& text) override;
};

} // namespace vellumry
