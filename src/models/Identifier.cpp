#include "models/Identifier.h"

#include <QUuid>

namespace vellumry {

QString makeIdentifier()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace vellumry
