#pragma once

#include "Desktop/MountedVolumes.h"
#include "Desktop/UserFolders.h"
#include "Foundation/DiskPatience.h"
#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <memory>
#include <stop_token>

/// What there is on the disks, roughly. Holds no state; may run on any thread.
namespace StorageOverviewScanner {

/// What has answered as the home screen shows it: "/" first and the others in the system's order. A volume without
/// capacity is left out.
[[nodiscard]] std::vector<VolumeInfo> volumes(const MountedVolumes::Answers& answers);

/// The folders measured for each kind but the last, in the order of the kinds. No folder is in it twice, nor one inside
/// another, except where the user's home has links between the folders that every home has.
[[nodiscard]] std::vector<std::vector<FileURL>> folderGroups(const UserFolderPaths& paths);

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
