#pragma once

#include "Desktop/MountedVolumes.h"
#include "Desktop/UserFolders.h"
#include "Foundation/DirectoryWalk.h"
#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <memory>
#include <stop_token>

/// What there is on the disks, roughly. Holds no state; may run on any thread.
namespace StorageOverviewScanner {

/// What has answered as the home screen shows it: "/" first and the others in the system's order. A volume without
/// capacity is left out.
[[nodiscard]] std::vector<VolumeInfo> volumes(const MountedVolumes::Answers& answers);

/// The folders measured for each kind but the last.
struct FolderGroups {
    std::vector<std::vector<WalkRoot>> kinds;  ///< In the order of the kinds.
    std::shared_ptr<LateAnswer> lateAnswer;    ///< Null unless a disk did not tell where a folder lies.
};

/// Each place is measured once: where two are the same folder, for the one of the two that every home has, or else for
/// the earlier kind; where one lies inside another, for the inner one, which the outer one leaves out. Asks the disks
/// where links lead; a folder that the user has named is left out while its disk does not answer.
[[nodiscard]] FolderGroups folderGroups(const UserFolderPaths& paths, const std::stop_token& stop = {});

/// How much of the main disk each kind takes.
struct KindSizes {
    StorageCategories categories;            ///< One record a kind, in order.
    std::shared_ptr<LateAnswer> lateAnswer;  ///< Null unless something did not answer and was passed over.
};

/// Measures each kind; the last one is what is used beyond the folders measured. Walks those folders, packages
/// included, hidden entries and links not, on several threads, which may take minutes; a kind keeps what was counted of
/// a folder that stops answering. A sum beyond 64 bits ends the program. `stop` ends it early, because nobody waits any
/// more.
[[nodiscard]] KindSizes categories(const std::optional<VolumeInfo>& mainVolume, const UserFolderPaths& paths,
                                   const std::stop_token& stop = {});

}  // namespace StorageOverviewScanner
