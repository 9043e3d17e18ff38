#pragma once

namespace vellumry {

/// The place where merging conflict copies would live. Nothing is merged so far: whatever the
/// person chooses, the copies are deleted and the library stays as it is.
class ConflictMergeService {};

} // namespace vellumry
