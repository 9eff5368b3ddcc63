#pragma once

#include "Desktop/MountedVolumes.h"
#include "Desktop/UserFolders.h"
#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <stop_token>

/// What there is on the disks, roughly. Holds no state; may run on any thread.
namespace StorageOverviewScanner {

/// What has answered as the home screen shows it: "/" first and the others in the system's order. A volume without
/// capacity is left out.
[[nodiscard]] std::vector<VolumeInfo> volumes(const MountedVolumes::Answers& answers);

/// The folders measured for each kind but the last, in the order of the kinds. No folder is in it twice, nor one inside
/// another, except where the user's home has links between the folders that every home has.
[[nodiscard]] std::vector<std::vector<FileURL>> folderGroups(const UserFolderPaths& paths);

/// How much of the main disk each kind takes: one record a kind, in order, the last one being what is used beyond the
/// folders measured. Walks those folders one after another, which may take minutes. A sum beyond 64 bits ends the
/// program. `stop` ends it early, because nobody waits any more.
[[nodiscard]] StorageCategories categories(const std::optional<VolumeInfo>& mainVolume, const UserFolderPaths& paths,
                                           const std::stop_token& stop = {});

/// Bytes on disk of the files below a folder, packages included, hidden entries and links not; 0 where nothing can be
/// listed.
[[nodiscard]] std::int64_t allocatedSize(const FileURL& url, const std::stop_token& stop = {});

}  // namespace StorageOverviewScanner
