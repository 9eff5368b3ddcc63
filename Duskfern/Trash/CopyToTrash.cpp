#include "Trash/CopyToTrash.h"

#include "Foundation/CheckedSum.h"
#include "Trash/DirectorySizes.h"
#include "Trash/SafeRename.h"
#include "Trash/StagingFolder.h"
#include "Trash/TrashFailure.h"
#include "Trash/TreeCopy.h"
#include "Trash/TreeRemoval.h"

#include <sys/statvfs.h>

#include <limits>

namespace {

/// An error unless the disk has room for a copy and a tenth more.
std::optional<TrashError> spaceError(const TreeManifest& manifest, int disk) {
    struct statvfs status {};
    if (fstatvfs(disk, &status) != 0) {
        return {};
    }
    // Each entry takes up to one block more than its data.
    const auto block = static_cast<std::int64_t>(status.f_frsize);
    const auto entries = static_cast<std::int64_t>(manifest.entryCount() + 1);
    const std::int64_t wanted = checkedSum(manifest.bytes(), entries * block);
    const std::int64_t countable = std::numeric_limits<std::int64_t>::max() / std::max<std::int64_t>(1, block);
    const auto blocks =
        static_cast<std::int64_t>(std::min<std::uint64_t>(status.f_bavail, static_cast<std::uint64_t>(countable)));
    if (checkedSum(wanted, wanted / 10) > blocks * block) {
        return TrashError::homeFull;
    }
    if (status.f_files > 0 && status.f_favail < manifest.entryCount() + 4) {
        return TrashError::noInodes;
    }
    return {};
}

}  // namespace

std::optional<TrashError> copyToTrash(const TrashItem& item, const TrashFolder& trash, const Trash::Progress& progress,
                                      const std::stop_token& stop) {
    TreeManifest manifest;
    if (const auto error = manifest.read(item.parent.number(), item.name, item.item.number(), stop)) {
        return error;
    }
    if (const auto error = spaceError(manifest, trash.root())) {
        return error;
    }
    StagingFolder place(trash.root());
    if (const int number = place.make()) {
        const TrashError error = trashFolderErrorOf(number, trash.root());
        return error == TrashError::full ? TrashError::homeFull : error;
    }
    TreeCopy copy(manifest, {item.parent.number(), item.name, item.item.number()}, place.folder(), progress, stop);
    if (const auto error = copy.copy()) {
        return error;
    }
    if (const auto error = copy.syncAndCompare()) {
        return error;
    }
    if (!item.isInPlace()) {
        return TrashError::changed;
    }
    const std::optional<FileStatus> made = fileStatus(place.folder(), TreeCopy::copyName);
    if (!made) {
        return TrashError::diskError;
    }
    const TrashFolder::Taken taken =
        trash.take(place.folder(), TreeCopy::copyName, made->identity, item.name, item.path);
    if (taken.error || taken.isCrossDevice) {
        return taken.error.value_or(TrashError::noTrash);
    }
    OriginalRemoval removal(item.parent.number(), item.name, item.item.number(), manifest);
    switch (removal.run()) {
        case OriginalRemoval::Result::nothingGone:
            // Moves the copy back to the staging folder, which is then removed.
            return trash.putBack(taken.name, place.folder(), TreeCopy::copyName, made->identity) ? removal.error()
                                                                                                 : TrashError::remains;
        case OriginalRemoval::Result::partlyGone:
            static_cast<void>(syncFolder(item.parent.number()));
            return TrashError::remains;
        case OriginalRemoval::Result::done:
            break;
    }
    static_cast<void>(syncFolder(item.parent.number()));
    if (item.status.isFolder()) {
        recordDirectorySize(trash, taken.name, manifest.bytes());
    }
    return {};
}
