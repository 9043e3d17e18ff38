#pragma once

#include <QString>

#include <array>

namespace vellumry {

/// What the person can choose to do about conflict copies. The choice carries no weight: see
/// ConflictResolution.
enum class ConflictMergeStrategy { useLocal, useRemote, smartMerge, keepBoth };

inline constexpr std::array allConflictMergeStrategies{
    ConflictMergeStrategy::useLocal, ConflictMergeStrategy::useRemote,
    ConflictMergeStrategy::smartMerge, ConflictMergeStrategy::keepBoth};

/// The choice that is made until the person makes one, recommended by a badge.
inline constexpr ConflictMergeStrategy defaultConflictMergeStrategy =
    ConflictMergeStrategy::smartMerge;

/// The name by which a strategy is told from the others.
[[nodiscard]] QString rawValue(ConflictMergeStrategy strategy);

[[nodiscard]] QString titleOf(ConflictMergeStrategy strategy);
[[nodiscard]] QString description(ConflictMergeStrategy strategy);
/// The name of the symbol in its row.
[[nodiscard]] QString symbol(ConflictMergeStrategy strategy);
/// The text of the badge in its row; empty where there is none.
[[nodiscard]] QString badge(ConflictMergeStrategy strategy);

} // namespace vellumry
