#include "platform/RandomSource.h"

#include <QStringBuilder>

namespace vellumry {

RandomSourceError::RandomSourceError(const QString& cause)
    : words(u"cannot draw random bytes: " % cause), bytes(words.toUtf8())
{
}

} // namespace vellumry
