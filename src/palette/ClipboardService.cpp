#include "palette/ClipboardService.h"

#include "platform/Pasteboard.h"

namespace vellumry {

ClipboardService::ClipboardService(Pasteboard& desktopPasteboard) : pasteboard(desktopPasteboard) {}

void ClipboardService::copy(const QString& text)
{
    pasteboard.setString(text);
}

} // namespace vellumry
