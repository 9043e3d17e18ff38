#pragma once

#include "sync/ConflictMergeStrategy.h"

namespace vellumry {

class CollectionFileStorageService;
class ConflictDetectionService;

/// What happens to the conflict copies once the person has chosen a strategy: all that are in the
/// data folder by then are deleted, whichever it was. The library, in memory and on disk, stays as
/// it is. Main thread only.
class ConflictResolution {
public:
    /// Both outlive this object.
    ConflictResolution(const ConflictDetectionService& detectionService,
                       CollectionFileStorageService& store)
        : detection(detectionService), storage(store)
    {
    }

    /// Deletes the copies and takes the warning away. A copy that cannot be deleted is told to
    /// nobody; it is found again by the next detection.
    void resolve(ConflictMergeStrategy strategy);

private:
    const ConflictDetectionService& detection;
    CollectionFileStorageService& storage;
};

} // namespace vellumry
