#pragma once

#include "Desktop/MountedVolumes.h"
#include "Desktop/UserFolders.h"
#include "Foundation/DirectoryWalk.h"
#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <memory>
#include <stop_token>

/// Lists the volumes and measures the categories. Stateless; may run on any thread.
namespace StorageOverviewScanner {

/// The volumes for the home screen: "/" first, then the others in the order of the mount table. Volumes without
/// capacity are left out.
[[nodiscard]] std::vector<VolumeInfo> volumes(const MountedVolumes::Answers& answers);

/// The folders to measure, for each kind but the last.
struct FolderGroups {
    std::vector<std::vector<WalkRoot>> kinds;  ///< In the order of the kinds.
    std::shared_ptr<LateAnswer> lateAnswer;    ///< Null unless the real path of a folder was not answered in time.
};

/// Each folder is measured once: if two rows are the same folder, for the row with `always`, else for the earlier kind;
/// if one folder contains another, the outer one excludes the inner one. Reads real paths from the disks; a user's
/// folder whose disk does not answer is left out.
[[nodiscard]] FolderGroups folderGroups(const UserFolderPaths& paths, const std::stop_token& stop = {});

/// The sizes of the kinds on the main disk.
struct KindSizes {
    StorageCategories categories;            ///< One record per kind, in order.
    std::shared_ptr<LateAnswer> lateAnswer;  ///< Null unless something was skipped after a timeout.
};

/// Measures each kind; the last one is the used space minus the folders measured. Walks these folders, including
/// packages but not hidden entries and links, on several threads, which may take minutes. If a folder stops answering,
/// what was counted until then is kept. Ends the program when a sum exceeds 64 bits. `stop` ends the walk early.
[[nodiscard]] KindSizes categories(const std::optional<VolumeInfo>& mainVolume, const UserFolderPaths& paths,
                                   const std::stop_token& stop = {});

}  // namespace StorageOverviewScanner
