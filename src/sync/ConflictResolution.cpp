#include "sync/ConflictResolution.h"

#include "platform/FileSystem.h"
#include "storage/CollectionFileStorageService.h"
#include "sync/ConflictDetectionService.h"

namespace vellumry {

void ConflictResolution::resolve(ConflictMergeStrategy /*strategy*/)
{
    try {
        detection.deleteAllConflicts();
    } catch (const FileError&) {
        // The warning goes all the same.
    }
    storage.setDetectedConflicts({});
}

} // namespace vellumry
