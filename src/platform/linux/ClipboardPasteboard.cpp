#include "platform/linux/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace vellumry {

void ClipboardPasteboard::setString(const QString& text)
{
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

void ClipboardPasteboard::setSecretString(const QString& text)
{
    auto contents = std::make_unique<QMimeData>();
    contents->setText(text);
    // What the clipboard managers of the desktops have agreed on for passwords.
    contents->setData(QStringLiteral("x-kde-passwordManagerHint"), QByteArrayLiteral("secret"));
    QGuiApplication::clipboard()->setMimeData(contents.release(), QClipboard::Clipboard);
}

} // namespace vellumry
