#pragma once

#include "core/Date.h"

#include <QString>

#include <optional>

namespace vellumry {

/// The head of a collection as files hold it.
struct SyncCollection {
    QString id;
    QString name;
    std::optional<QString> color; ///< a preset's name, or "#" and hexadecimal digits
    Date createdAt{};

    friend bool operator==(const SyncCollection&, const SyncCollection&) = default;
};

} // namespace vellumry
