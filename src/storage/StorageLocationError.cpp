#include "storage/StorageLocationError.h"

#include <QStringBuilder>

namespace vellumry {

StorageLocationError::StorageLocationError(Kind whichKind, const QString& location,
                                           const QString& text)
    : errorKind(whichKind), folder(location), words(text), bytes(text.toUtf8())
{
}

StorageLocationError StorageLocationError::notADirectory(const QString& location)
{
    return {Kind::notADirectory, location, u"路径不是目录: " % location};
}

StorageLocationError StorageLocationError::notWritable(const QString& location)
{
    return {Kind::notWritable, location, u"目录不可写: " % location};
}

StorageLocationError StorageLocationError::cannotCreateDirectory(const QString& location,
                                                                 const QString& cause)
{
    return {Kind::cannotCreateDirectory, location, u"无法创建目录 " % location % u": " % cause};
}

StorageLocationError StorageLocationError::writeTestFailed(const QString& location,
                                                           const QString& cause)
{
    return {Kind::writeTestFailed, location, u"写入测试失败 " % location % u": " % cause};
}

} // namespace vellumry
