#include "platform/LoginItem.h"

namespace vellumry {

LoginItemError::LoginItemError(const QString& description)
    : words(description), bytes(description.toUtf8())
{
}

} // namespace vellumry
