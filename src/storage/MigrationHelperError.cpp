#include "storage/MigrationHelperError.h"

namespace vellumry {

MigrationHelperError::MigrationHelperError(Kind kind) : errorKind(kind) {}

QString MigrationHelperError::description() const
{
    return QString::fromUtf8(what());
}

const char* MigrationHelperError::what() const noexcept
{
    switch (errorKind) {
    case Kind::noValidDataAtDestination:
        return "No valid Vellumry data found at the destination";
    case Kind::copyFailed:
        return "Failed to copy data to the new location";
    case Kind::dataIntegrityCheckFailed:
        return "Data integrity check failed after copy";
    }
    return "";
}

} // namespace vellumry
