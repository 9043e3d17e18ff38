#include "platform/FileSystem.h"

#include <QStringBuilder>

#include <system_error>

namespace vellumry {

FileError::FileError(const QString& action, const QString& path, const QString& cause)
    : words(u"cannot " % action % u" \"" % path % u"\": " % cause), bytes(words.toUtf8())
{
}

FileError::FileError(const QString& action, const QString& path, int errorNumber)
    : FileError(action, path, QString::fromStdString(std::system_category().message(errorNumber)))
{
}

const char* FileError::what() const noexcept
{
    return bytes.constData();
}

std::optional<FileStamp> FileSystem::write(const QString& path, QByteArrayView bytes)
{
    return write(path, [bytes](const ByteSink& sink) { sink(bytes); });
}

} // namespace vellumry
