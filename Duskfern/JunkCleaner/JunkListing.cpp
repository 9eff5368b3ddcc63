#include "JunkCleaner/JunkListing.h"

#include "Foundation/DiskRequests.h"
#include "Foundation/HiddenList.h"
#include "Foundation/OpenPath.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <QtCore/QDateTime>

#include <memory>

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

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

}  // namespace

void listJunkPlace(const JunkPlace& place, const std::function<void(const std::string& path)>& opened,
                   const std::function<void(JunkListing::Entry)>& found) {
    const std::optional<std::string> path = realPath(place.url);
    Descriptor descriptor = path ? openPath(FileURL(*path), O_RDONLY | O_DIRECTORY | O_NONBLOCK) : Descriptor();
    if (!descriptor.isOpen() || (place.kind == JunkKind::temporary && isInMemory(descriptor.number()))) {
        return;
    }
    (void)fcntl(descriptor.number(), F_SETFL, O_NONBLOCK | O_NOATIME);
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(descriptor.number()));
    if (folder == nullptr) {
        return;
    }
    (void)descriptor.release();
    opened(*path);
    const int number = dirfd(folder.get());
    const NameSet hidden = hiddenNames(number);
    const QDateTime newest = place.olderThanDays ? cutoff(*place.olderThanDays) : QDateTime();
    while (const dirent* const entry = readdir(folder.get())) {
        heartbeat();
        const std::string_view name = entry->d_name;
        if (name.front() == '.' || hidden.contains(name) || !reasonToKeep(place.keep, name).empty()) {
            continue;
        }
        const std::optional<FileStatus> status = fileStatus(number, entry->d_name);
        if (status && (status->isRegularFile() || status->isFolder()) && status->owner == geteuid() &&
            !(place.olderThanDays && isModifiedAfter(*status, newest))) {
            found({std::string(name), *status});
        }
    }
}
