#include "core/FatalError.h"

#include <QByteArray>
#include <QString>
#include <QStringBuilder>

#include <cstdio>
#include <cstdlib>

namespace vellumry {

void fatalError(QStringView text)
{
    const QByteArray bytes = text.toUtf8();
    std::fprintf(stderr, "%s\n", bytes.constData());
    std::fflush(stderr);
    std::abort();
}

void fatalDuplicateKey(QStringView key)
{
    fatalError(QString(u"Duplicate values for key: '" % key % u'\''));
}

} // namespace vellumry
