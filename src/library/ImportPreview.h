#pragma once

#include "library/ImportConflicts.h"

#include <QString>

#include <array>

namespace vellumry {

inline constexpr std::array allConflictResolutionModes{
    ConflictResolutionMode::smartUpdate, ConflictResolutionMode::restoreFromBackup,
    ConflictResolutionMode::skipConflicts, ConflictResolutionMode::keepBoth};

/// How a mode is offered to the person.
[[nodiscard]] QString title(ConflictResolutionMode mode);
[[nodiscard]] QString description(ConflictResolutionMode mode);
/// The name of its symbol.
[[nodiscard]] QString symbol(ConflictResolutionMode mode);

/// A text with the name of its symbol.
struct SymbolText {
    QString text;
    QString symbol;

    friend bool operator==(const SymbolText&, const SymbolText&) = default;
};

/// What an import says about a conflict ahead of the person's answer.
namespace ImportPreview {

[[nodiscard]] SymbolText type(const ImportConflict& conflict);
/// Which side is newer.
[[nodiscard]] QString status(const ImportConflict& conflict);
/// What the mode will do about it.
[[nodiscard]] SymbolText decision(const ImportConflict& conflict, ConflictResolutionMode mode);

} // namespace ImportPreview

} // namespace vellumry
