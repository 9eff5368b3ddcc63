#include "StorageOverview/StorageOverviewScanner.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/FolderSizes.h"

#include <algorithm>

namespace StorageOverviewScanner {

namespace {

/// One folder that is measured for a kind. The first that applies of these says where it is.
struct FolderRow {
    StorageKind kind = StorageKind::system;
    const char* inHome = nullptr;                            ///< Every home's folder of that name.
    std::optional<FileURL> UserFolderPaths::*own = nullptr;  ///< The folder the user named for it.
    const char* inSystem = nullptr;                          ///< A folder for all users.
    enum class Claim { always, ifFree } claim = Claim::ifFree;
};

/// In the order in which they are measured. Those marked `always` are measured whatever the others are.
constexpr auto always = FolderRow::Claim::always;
constexpr std::array folderRows{
    FolderRow{.kind = StorageKind::music, .inHome = "Music", .claim = always},
    FolderRow{.kind = StorageKind::music, .own = &UserFolderPaths::music},
    FolderRow{.kind = StorageKind::videos, .inHome = "Movies", .claim = always},
    FolderRow{.kind = StorageKind::videos, .own = &UserFolderPaths::videos},
    FolderRow{.kind = StorageKind::images, .inHome = "Pictures", .claim = always},
    FolderRow{.kind = StorageKind::images, .own = &UserFolderPaths::pictures},
    FolderRow{.kind = StorageKind::documents, .inHome = "Documents", .claim = always},
    FolderRow{.kind = StorageKind::documents, .inHome = "Desktop", .claim = always},
    FolderRow{.kind = StorageKind::documents, .own = &UserFolderPaths::documents},
    FolderRow{.kind = StorageKind::documents, .own = &UserFolderPaths::desktop},
    FolderRow{.kind = StorageKind::downloads, .inHome = "Downloads", .claim = always},
    FolderRow{.kind = StorageKind::downloads, .own = &UserFolderPaths::downloads},
    FolderRow{.kind = StorageKind::applications, .inSystem = "Applications", .claim = always},
    FolderRow{.kind = StorageKind::applications, .inHome = "Applications", .claim = always},
    FolderRow{.kind = StorageKind::applications, .inSystem = "opt"},
    // Flatpak's store holds the same files a second time, by hard links.
    FolderRow{.kind = StorageKind::applications, .inSystem = "var/lib/flatpak/app"},
    FolderRow{.kind = StorageKind::applications, .inSystem = "var/lib/flatpak/runtime"},
    FolderRow{.kind = StorageKind::applications, .inSystem = "var/lib/snapd/snaps"},
    FolderRow{.kind = StorageKind::applications, .inHome = ".local/share/flatpak/app"},
    FolderRow{.kind = StorageKind::applications, .inHome = ".local/share/flatpak/runtime"},
};

std::optional<FileURL> locate(const FolderRow& row, const UserFolderPaths& paths) {
    if (row.inHome != nullptr) {
        return paths.home.appendingPathComponent(row.inHome);
    }
    if (row.inSystem != nullptr) {
        return paths.systemRoot.appendingPathComponent(row.inSystem);
    }
    return paths.*row.own;
}

/// The folders to measure, as far as the disks tell where their links lead; none for any kind where they do not answer.
std::vector<std::vector<FileURL>> answeredGroups(const UserFolderPaths& paths, const std::stop_token& stop,
                                                 std::shared_ptr<LateAnswer>& late) {
    const auto answer = std::make_shared<Handover<std::vector<std::vector<FileURL>>>>();
    DiskQuestions questions;
    questions.ask([paths, answer] {
        auto groups = folderGroups(paths);
        answer->edit([&](std::vector<std::vector<FileURL>>& given) { given = std::move(groups); });
    });
    late = questions.wait(stop);
    auto groups = answer->take();
    groups.resize(StorageKinds::allCases.size() - 1);
    return groups;
}

}  // namespace

std::vector<VolumeInfo> volumes(const MountedVolumes::Answers& answers) {
    std::vector<VolumeInfo> volumes;
    for (const auto& [url, values] : answers) {
        if (values.total.value_or(0) <= 0) {
            continue;
        }
        const std::int64_t available = values.availableCapacityForImportantUsage.value_or(values.available.value_or(0));
        VolumeInfo& volume = volumes.emplace_back();
        volume.url = url;
        volume.name = values.name.value_or(displayText(url.lastPathComponent()));
        volume.total = *values.total;
        volume.available = std::max<std::int64_t>(0, available);
    }
    std::stable_partition(volumes.begin(), volumes.end(),
                          [](const VolumeInfo& volume) { return volume.isStartupDisk(); });
    return volumes;
}

std::vector<std::vector<FileURL>> folderGroups(const UserFolderPaths& paths) {
    std::vector<std::string> taken;
    for (const FolderRow& row : folderRows) {
        if (row.claim == always) {
            if (const std::optional<std::string> place = realPath(*locate(row, paths))) {
                taken.push_back(*place);
            }
        }
    }
    const std::string home = realPath(paths.home).value_or(std::string());
    std::vector<std::vector<FileURL>> groups(StorageKinds::allCases.size() - 1);
    for (const FolderRow& row : folderRows) {
        const std::optional<FileURL> url = locate(row, paths);
        if (!url) {
            continue;
        }
        if (row.claim != always) {
            const std::optional<std::string> place = realPath(*url);
            const auto overlaps = [&](const std::string& other) {
                return isAtOrBelow(*place, other) || isAtOrBelow(other, *place);
            };
            // A purpose that is switched off is written as the home folder.
            if (!place || isAtOrBelow(home, *place) || std::any_of(taken.begin(), taken.end(), overlaps)) {
                continue;
            }
            taken.push_back(*place);
        }
        groups[static_cast<std::size_t>(row.kind)].push_back(*url);
    }
    return groups;
}

KindSizes categories(const std::optional<VolumeInfo>& mainVolume, const UserFolderPaths& paths,
                     const std::stop_token& stop) {
    KindSizes result;
    std::vector<WalkRoot> folders;
    std::vector<std::size_t> kinds;  // The index of the kind that each folder counts for.
    const std::vector<std::vector<FileURL>> groups = answeredGroups(paths, stop, result.lateAnswer);
    for (std::size_t kind = 0; kind < groups.size(); ++kind) {
        result.categories.emplace_back().kind = StorageKinds::allCases.at(kind);
        for (const FileURL& folder : groups[kind]) {
            folders.push_back({folder});
            kinds.push_back(kind);
        }
    }
    FolderSizes sizes = folderSizes(
        std::move(folders), [](std::string_view) { return true; }, stop);
    std::int64_t counted = 0;
    for (std::size_t folder = 0; folder < kinds.size(); ++folder) {
        StorageCategory& category = result.categories[kinds[folder]];
        category.size = checkedSum(category.size, sizes.bytes[folder]);
        counted = checkedSum(counted, sizes.bytes[folder]);
    }
    if (sizes.lateAnswer) {
        result.lateAnswer = std::move(sizes.lateAnswer);
    }
    const std::int64_t used = mainVolume ? mainVolume->used() : 0;
    StorageCategory& rest = result.categories.emplace_back();
    rest.kind = StorageKind::system;
    rest.size = std::max<std::int64_t>(0, checkedDifference(used, counted));
    return result;
}

}  // namespace StorageOverviewScanner
