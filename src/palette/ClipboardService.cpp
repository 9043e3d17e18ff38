#include "palette/ClipboardService.h"

#include "platform/Pasteboard.h"

namespace vellumry {

ClipboardService::ClipboardService(Pasteboard& desktopPasteboard) : pasteboard(desktopPasteboard) {}

void ClipboardService::copy(const QString& text)
{
    pasteboard.setString(text);
}

void ClipboardService::copySecret(const QString& text)
{
    pasteboard.setSecretString(text);
}

} // namespace vellumry
