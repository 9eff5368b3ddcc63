#include "JunkCleaner/JunkListing.h"

#include "Foundation/DiskRequests.h"
#include "Foundation/HiddenList.h"
#include "Foundation/OpenPath.h"
#include "JunkCleaner/NamePattern.h"
#include "JunkCleaner/RunningPrograms.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <QtCore/QDateTime>

#include <memory>
#include <utility>

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

/// The latest modification time of a file that is old enough: `days` calendar days before now, also across changes of
/// daylight saving time.
QDateTime cutoff(int days) {
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

/// Files on these file systems take no disk space.
bool isInMemory(int folder) {
    struct statfs status {};
    return fstatfs(folder, &status) == 0 && (status.f_type == TMPFS_MAGIC || status.f_type == RAMFS_MAGIC);
}

bool isInList(std::string_view list, std::string_view name) {
    bool isFound = false;
    forEachPart(list, '|', [&](std::string_view part) { isFound = isFound || part == name; });
    return isFound;
}

/// A profile of a browser, which keeps more there than a program that is built on one.
bool isBrowserProfile(std::string_view name) {
    return name == "Default" || name == "Guest Profile" || name == "System Profile" || name.starts_with("Profile ");
}

/// Lists the folders of one place.
class PlaceLister {
public:
    using Report = std::function<void(const std::function<void(PlaceListing&)>&)>;

    PlaceLister(const JunkPlace& place, const Report& report)
        : m_place(place),
          m_report(report),
          m_newest(place.olderThanDays ? cutoff(*place.olderThanDays) : QDateTime()) {}

    void list() {
        const std::optional<std::string> path = realPath(m_place.url);
        Descriptor folder = path ? openPath(FileURL(*path), O_RDONLY | O_DIRECTORY | O_NONBLOCK) : Descriptor();
        const std::optional<FileStatus> status = folder.isOpen() ? fileStatus(folder.number(), "") : std::nullopt;
        if (!status || (m_place.kind == JunkKind::temporary && isInMemory(folder.number()))) {
            return;
        }
        m_device = status->identity.device;
        const std::string within = m_place.within ? realPath(*m_place.within).value_or(*path) : std::string();
        const std::vector<int> locks = m_place.lockFile ? lockOwner(*m_place.lockFile) : std::vector<int>();
        m_report([&](PlaceListing& listing) {
            listing.path = *path;
            listing.within = within;
            for (const int lock : locks) {
                listing.locks.push_back({*path, lock});
            }
        });
        descend(std::move(folder), m_place.below, {m_place.url, *path, {}, {}});
    }

private:
    /// Goes on to the folders that `below` stands for.
    // NOLINTNEXTLINE(misc-no-recursion): as deep as the place's pattern.
    void descend(Descriptor folder, std::string_view below, const JunkListing& at) {
        if (below.empty()) {
            listEntries(std::move(folder), at);
            return;
        }
        const std::string_view component = below.substr(0, below.find('/'));
        below.remove_prefix(std::min(component.size() + 1, below.size()));
        if (component != "*" && component != "@") {
            enter(folder.number(), std::string(component), false, below, at);
            return;
        }
        const int number = folder.number();
        const Folder stream(fdopendir(number));
        if (stream == nullptr) {
            return;
        }
        (void)folder.release();
        while (const dirent* const entry = readdir(stream.get())) {
            heartbeat();
            const std::string_view name = entry->d_name;
            if (name.front() != '.' && (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN) &&
                !isBrowserProfile(name)) {
                enter(number, std::string(name), component == "@", below, at);
            }
        }
    }

    // NOLINTNEXTLINE(misc-no-recursion)
    void enter(int parent, const std::string& name, bool isProgram, std::string_view below, const JunkListing& at) {
        const std::optional<FileStatus> status = fileStatus(parent, name.c_str());
        if (!status || !status->isFolder() || status->owner != geteuid() || status->isMountPoint ||
            status->identity.device != m_device) {
            return;
        }
        Descriptor folder = openPathAt(parent, name, O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_NOFOLLOW | O_NOATIME);
        if (!folder.isOpen()) {
            return;
        }
        const JunkListing next{at.url.appendingPathComponent(name),
                               FileURL(at.path).appendingPathComponent(name).path(),
                               isProgram ? name : at.program,
                               {}};
        for (const int process : lockOwners(folder.number())) {
            m_report([&](PlaceListing& listing) { listing.locks.push_back({next.path, process}); });
        }
        descend(std::move(folder), below, next);
    }

    void listEntries(Descriptor folder, const JunkListing& at) {
        const int number = folder.number();
        (void)fcntl(number, F_SETFL, O_NONBLOCK | O_NOATIME);
        if (!m_place.only.empty()) {
            listOnly(number, at);
            return;
        }
        const NameSet hidden = hiddenNames(number);
        const Folder stream(fdopendir(number));
        if (stream == nullptr) {
            return;
        }
        (void)folder.release();
        bool isReported = false;
        while (const dirent* const entry = readdir(stream.get())) {
            heartbeat();
            if (!hidden.contains(entry->d_name)) {
                add(number, entry->d_name, at, isReported);
            }
        }
    }

    void listOnly(int folder, const JunkListing& at) {
        bool isBeside = m_place.beside.empty();
        forEachPart(m_place.beside, '|', [&](std::string_view name) {
            isBeside = isBeside || fileStatus(folder, std::string(name).c_str());
        });
        bool isReported = false;
        if (isBeside) {
            forEachPart(m_place.only, '|',
                        [&](std::string_view name) { add(folder, std::string(name).c_str(), at, isReported); });
        }
    }

    [[nodiscard]] bool isKept(std::string_view name) const {
        const bool isIdentifier = m_place.isFlatpakData && m_place.below.empty();
        return name.front() == '.' || isInList(m_place.except, name) ||
               !reasonToKeep(m_place.keep, isIdentifier ? flatpakName(name) : name).empty();
    }

    void add(int folder, const char* name, const JunkListing& at, bool& isReported) {
        const std::optional<FileStatus> status = isKept(name) ? std::nullopt : fileStatus(folder, name);
        if (status && (status->isRegularFile() || status->isFolder()) && status->owner == geteuid() &&
            !(m_place.olderThanDays && isModifiedAfter(*status, m_newest))) {
            const bool isFirst = !std::exchange(isReported, true);
            m_report([&](PlaceListing& listing) {
                if (isFirst) {
                    listing.folders.push_back(at);
                }
                listing.folders.back().entries.push_back({name, *status});
            });
        }
    }

    const JunkPlace& m_place;
    const Report& m_report;
    const QDateTime m_newest;
    std::uint64_t m_device = 0;
};

}  // namespace

void listJunkPlace(const JunkPlace& place,
                   const std::function<void(const std::function<void(PlaceListing&)>&)>& report) {
    PlaceLister(place, report).list();
}
