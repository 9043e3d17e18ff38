#include "models/DecodingError.h"

#include <QStringBuilder>

#include <utility>

namespace vellumry {

DecodingError::DecodingError(QString why, QString where)
    : reason(std::move(why)), path(std::move(where)), text(description().toUtf8())
{
}

QString DecodingError::description() const
{
    return path.isEmpty() ? reason : QString(path % u": " % reason);
}

DecodingError DecodingError::within(const QString& outerPath) const
{
    if (path.isEmpty())
        return DecodingError(reason, outerPath);
    const bool isIndex = path.startsWith(u'[');
    return DecodingError(reason,
                         isIndex ? QString(outerPath % path) : QString(outerPath % u'.' % path));
}

const char* DecodingError::what() const noexcept
{
    return text.constData();
}

} // namespace vellumry
