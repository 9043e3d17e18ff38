#pragma once

#include <QString>

namespace vellumry {

/// A new id for a snippet or a collection: the upper-case text of a random (version 4) UUID,
/// 36 characters with dashes. Ids are opaque everywhere; files may hold ids of any other form.
[[nodiscard]] QString makeIdentifier();

} // namespace vellumry
