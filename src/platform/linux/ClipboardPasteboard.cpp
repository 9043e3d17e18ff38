#include "platform/linux/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vellumry {

void ClipboardPasteboard::setString(const QString& text)
{
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

} // namespace vellumry
