#include "StorageOverview/StorageOverviewScanner.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/DiskRequests.h"
#include "Foundation/FolderSizes.h"
#include "Foundation/Handover.h"

#include <algorithm>

namespace StorageOverviewScanner {

namespace {

/// A folder that is measured for a kind. Exactly one of the three pointers is set.
struct FolderRow {
    StorageKind kind = StorageKind::system;
    const char* inHome = nullptr;                            ///< Folder of this name in the home.
    std::optional<FileURL> UserFolderPaths::*own = nullptr;  ///< Folder that the user has assigned to this purpose.
    const char* inSystem = nullptr;                          ///< Folder of this name in "/".
    enum class Priority { always, ifUnclaimed } priority = Priority::ifUnclaimed;
};

/// In the order of the kinds. Rows with `always` take precedence over the user's folders.
constexpr auto always = FolderRow::Priority::always;
constexpr std::array folderRows{
    FolderRow{.kind = StorageKind::music, .inHome = "Music", .priority = always},
    FolderRow{.kind = StorageKind::music, .own = &UserFolderPaths::music},
    FolderRow{.kind = StorageKind::videos, .inHome = "Movies", .priority = always},
    FolderRow{.kind = StorageKind::videos, .own = &UserFolderPaths::videos},
    FolderRow{.kind = StorageKind::images, .inHome = "Pictures", .priority = always},
    FolderRow{.kind = StorageKind::images, .own = &UserFolderPaths::pictures},
    FolderRow{.kind = StorageKind::documents, .inHome = "Documents", .priority = always},
    FolderRow{.kind = StorageKind::documents, .inHome = "Desktop", .priority = always},
    FolderRow{.kind = StorageKind::documents, .own = &UserFolderPaths::documents},
    FolderRow{.kind = StorageKind::documents, .own = &UserFolderPaths::desktop},
    FolderRow{.kind = StorageKind::downloads, .inHome = "Downloads", .priority = always},
    FolderRow{.kind = StorageKind::downloads, .own = &UserFolderPaths::downloads},
    FolderRow{.kind = StorageKind::applications, .inSystem = "Applications", .priority = always},
    FolderRow{.kind = StorageKind::applications, .inHome = "Applications", .priority = always},
    FolderRow{.kind = StorageKind::applications, .inSystem = "opt"},
    // The Flatpak repository beside these is left out: it holds the same files as hard links.
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

/// A folder to measure.
struct Place {
    FileURL url;
    std::string path;  ///< Without links.
};

using RealPaths = std::vector<std::optional<std::string>>;

/// The real path of each location, as far as the disks answer. Each is read on its own thread.
RealPaths realPaths(const std::vector<FileURL>& urls, const std::stop_token& stop, std::shared_ptr<LateAnswer>& late) {
    const auto answers = std::make_shared<Handover<RealPaths>>();
    answers->edit([&](RealPaths& paths) { paths.resize(urls.size()); });
    DiskRequests requests;
    for (std::size_t index = 0; index < urls.size(); ++index) {
        requests.start([answers, index, url = urls[index]] {
            std::optional<std::string> path = realPath(url);
            answers->edit([&](RealPaths& paths) { paths[index] = std::move(path); });
        });
    }
    late = requests.wait(stop);
    return answers->take();
}

/// The paths of the places below `outer`.
std::vector<std::string> placesInside(const Place& outer, const std::vector<std::optional<Place>>& places) {
    std::vector<std::string> inside;
    for (const std::optional<Place>& place : places) {
        if (place && place->path != outer.path && isAtOrBelow(place->path, outer.path)) {
            inside.push_back(place->path);
        }
    }
    return inside;
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

FolderGroups folderGroups(const UserFolderPaths& paths, const std::stop_token& stop) {
    FolderGroups groups;
    std::vector<FileURL> urls;
    urls.reserve(folderRows.size() + 1);
    for (const FolderRow& row : folderRows) {
        urls.push_back(locate(row, paths).value_or(paths.home));
    }
    urls.push_back(paths.home);
    const RealPaths realPaths = StorageOverviewScanner::realPaths(urls, stop, groups.lateAnswer);
    const std::string home = realPaths.back().value_or(paths.home.path());
    std::vector<std::optional<Place>> places(folderRows.size());
    for (const auto priority : {always, FolderRow::Priority::ifUnclaimed}) {
        for (std::size_t row = 0; row < folderRows.size(); ++row) {
            if (folderRows.at(row).priority != priority) {
                continue;
            }
            std::optional<std::string> path = realPaths[row];
            if (priority == always) {
                path = path.value_or(urls[row].path());
            } else if (path && isAtOrBelow(home, *path)) {
                // A purpose that is switched off in user-dirs.dirs points to the home folder.
                path.reset();
            }
            const auto isThere = [&](const std::optional<Place>& other) { return other && other->path == *path; };
            if (path && std::none_of(places.begin(), places.end(), isThere)) {
                places[row] = Place{urls[row], *path};
            }
        }
    }
    groups.kinds.resize(StorageKinds::allCases.size() - 1);
    for (std::size_t row = 0; row < folderRows.size(); ++row) {
        if (places[row]) {
            groups.kinds[static_cast<std::size_t>(folderRows.at(row).kind)].push_back(
                {places[row]->url, placesInside(*places[row], places)});
        }
    }
    return groups;
}

KindSizes categories(const std::optional<VolumeInfo>& mainVolume, const UserFolderPaths& paths,
                     const std::stop_token& stop) {
    KindSizes result;
    std::vector<WalkRoot> folders;
    std::vector<std::size_t> kinds;  // Index of the kind, by folder.
    FolderGroups groups = folderGroups(paths, stop);
    result.lateAnswer = std::move(groups.lateAnswer);
    for (std::size_t kind = 0; kind < groups.kinds.size(); ++kind) {
        result.categories.emplace_back().kind = StorageKinds::allCases.at(kind);
        for (WalkRoot& folder : groups.kinds[kind]) {
            folders.push_back(std::move(folder));
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
