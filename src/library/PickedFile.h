#pragma once

#include <QString>

#include <optional>

namespace vellumry {

/// What came of a dialog for files.
struct PickedFile {
    QString path;
    std::optional<QString> error; ///< why there is no file, in words
};

} // namespace vellumry
