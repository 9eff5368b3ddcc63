#include "JunkCleaner/JunkScanner.h"

#include "Desktop/InstalledApplications.h"
#include "Foundation/AllocatedSize.h"
#include "Foundation/FileStatus.h"
#include "Foundation/HiddenPlaces.h"
#include "Foundation/MountPoints.h"
#include "Foundation/Packages.h"
#include "JunkCleaner/Leftovers.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <QtCore/QDateTime>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace JunkScanner {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// The last moment whose files are old enough: so many days before now by the calendar, whatever the clocks did since.
QDateTime cutOff(int days) {
    QDateTime moment = QDateTime::currentDateTime().addDays(-days);
    if (!moment.isValid()) {
        qFatal("there is no such day");
    }
    return moment;
}

bool isModifiedAfter(const FileStatus& status, const QDateTime& moment) {
    const qint64 seconds = moment.toSecsSinceEpoch();
    return status.modifiedSeconds > seconds ||
           (status.modifiedSeconds == seconds &&
            status.modifiedNanoseconds > static_cast<std::uint32_t>(moment.time().msec()) * 1'000'000);
}

/// Lists the places one after the other.
class Lister {
public:
    Lister(const JunkPlaces& places, const InstalledApplications& applications) : m_tokens(applications.names()) {
        for (const FileURL& url : places.personal) {
            addReal(url, m_personal);
        }
        for (const FileURL& url : places.support) {
            addReal(url, m_support);
        }
        for (const MountPoint& mount : mountPoints()) {
            m_mounts.push_back(mount.target);
        }
    }

    /// Adds the direct children of a place for what everybody may throw away.
    void children(const JunkPlace& place) {
        list(place, [&place](JunkItem& item, const QString& name) {
            item.origin = originName(name, JunkKinds::rawValue(place.kind));
            item.isSafeForBulk = true;
            return true;
        });
    }

    /// Adds the direct children of a place for applications' data that belong to no installed application.
    void orphanedSupport(const JunkPlace& place) {
        list(place, [&](JunkItem& item, const QString& name) {
            item.origin = QStringLiteral("Aplicación no encontrada: ") + name;
            return place.isFlatpakData ? m_tokens.isOrphanedFlatpak(item.url.lastPathComponent())
                                       : m_tokens.isOrphaned(name);
        });
    }

    [[nodiscard]] std::vector<JunkItem> takeItems() { return std::move(m_items); }

private:
    /// Completes an item that may be listed; false when it is not to be.
    using Describe = std::function<bool(JunkItem& item, const QString& name)>;

    void list(const JunkPlace& place, const Describe& describe) {
        const std::optional<std::string> path = realPath(place.url);
        if (!path || !isPlaceToClean(place, *path)) {
            return;
        }
        const std::unique_ptr<DIR, CloseFolder> folder(opendir(path->c_str()));
        if (folder == nullptr || (place.kind == JunkKind::temporary && isInMemory(dirfd(folder.get())))) {
            return;
        }
        m_visited.push_back(*path);
        m_hidden = hiddenNames(dirfd(folder.get()));
        if (place.olderThanDays) {
            m_cutOff = cutOff(*place.olderThanDays);
        }
        while (const dirent* const entry = readdir(folder.get())) {
            const std::string_view name = entry->d_name;
            if (name.front() == '.' || m_hidden.contains(name) || !reasonToKeep(place.keep, name).empty()) {
                continue;
            }
            const std::optional<FileStatus> status = fileStatus(dirfd(folder.get()), entry->d_name);
            if (!status || !mayGo(place, *status)) {
                continue;
            }
            JunkItem item;
            item.url = place.url.appendingPathComponent(name);
            item.identity = status->identity;
            item.kind = place.kind;
            const std::string real = FileURL(*path).appendingPathComponent(name).path();
            if (!holdsAny(real, m_personal) && !holdsAny(real, m_support) && !holdsAny(real, m_visited) &&
                !holdsAny(real, m_mounts) && describe(item, displayText(name))) {
                m_items.push_back(std::move(item));
                m_listed.push_back(real);
            }
        }
    }

    static void addReal(const FileURL& url, std::vector<std::string>& paths) {
        if (std::optional<std::string> path = realPath(url)) {
            paths.push_back(std::move(*path));
        }
    }

    static bool holdsAny(const std::string& folder, const std::vector<std::string>& paths) {
        return std::any_of(paths.begin(), paths.end(),
                           [&](const std::string& path) { return isAtOrBelow(path, folder); });
    }

    /// What lies in memory takes no disk.
    static bool isInMemory(int folder) {
        struct statfs status {};
        return fstatfs(folder, &status) == 0 && (status.f_type == TMPFS_MAGIC || status.f_type == RAMFS_MAGIC);
    }

    [[nodiscard]] bool isPlaceToClean(const JunkPlace& place, const std::string& path) const {
        const bool isPersonal = std::find(m_personal.begin(), m_personal.end(), path) != m_personal.end();
        const bool holdsHome = !m_personal.empty() && isAtOrBelow(m_personal.front(), path);
        const bool isListed = std::any_of(m_listed.begin(), m_listed.end(),
                                          [&](const std::string& listed) { return isAtOrBelow(path, listed); }) ||
                              std::find(m_visited.begin(), m_visited.end(), path) != m_visited.end();
        return !isPersonal && !holdsHome && !isListed &&
               (place.kind == JunkKind::leftover || !holdsAny(path, m_support));
    }

    /// Whether the entry is a file or folder of the user's own, and old enough.
    [[nodiscard]] bool mayGo(const JunkPlace& place, const FileStatus& status) const {
        return (status.isRegularFile() || status.isFolder()) && status.owner == geteuid() &&
               !(place.olderThanDays && isModifiedAfter(status, m_cutOff));
    }

    const InstalledAppTokens m_tokens;
    std::vector<std::string> m_personal;  ///< Without links, as all paths below; the home first.
    std::vector<std::string> m_support;
    std::vector<std::string> m_mounts;
    std::vector<std::string> m_visited;  ///< Places.
    std::vector<std::string> m_listed;   ///< Items.
    std::vector<JunkItem> m_items;
    NameSet m_hidden;
    QDateTime m_cutOff;
};

/// Fills in the sizes, a few items at a time: on a cold cache that hides the disk's latency.
void measure(std::vector<JunkItem>& items, const std::stop_token& stop) {
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < items.size() && !stop.stop_requested(); i = next++) {
            items[i].size = allocatedSize(items[i].url, stop);
        }
    };
    std::vector<std::jthread> threads;
    for (unsigned i = 1; i < DirectoryWalk::recommendedThreads(); ++i) {
        threads.emplace_back(work);
    }
    work();
}

}  // namespace

std::vector<JunkItem> scan(const JunkPlaces& places, const InstalledApplications& applications,
                           const std::stop_token& stop) {
    Lister lister(places, applications);
    for (const JunkPlace& place : places.places) {
        if (place.kind == JunkKind::leftover) {
            lister.orphanedSupport(place);
        } else {
            lister.children(place);
        }
    }
    std::vector<JunkItem> items = lister.takeItems();
    measure(items, stop);
    std::erase_if(items, [](const JunkItem& item) { return item.size <= 0; });
    std::stable_sort(items.begin(), items.end(), [](const JunkItem& a, const JunkItem& b) { return a.size > b.size; });
    return items;
}

std::int64_t allocatedSize(const FileURL& url, const std::stop_token& stop) {
    const std::optional<FileStatus> status = fileStatus(url);
    if (!status || status->isRegularFile()) {
        return status ? status->allocated.value_or(0) : 0;
    }
    // An item that is offered has no mount inside, so there is no need to look for kernel file systems in each.
    const auto isEntered = [](std::string_view name) { return !isPackageName(name); };
    return status->isFolder() ? allocatedSizeBelow(url, isEntered, stop, {}) : 0;
}

}  // namespace JunkScanner
