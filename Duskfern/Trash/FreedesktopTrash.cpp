#include "Trash/FreedesktopTrash.h"

#include "Desktop/TrashVisibility.h"
#include "Trash/CopyToTrash.h"
#include "Trash/DirectorySizes.h"
#include "Trash/StagingFolder.h"
#include "Trash/TrashFailure.h"
#include "Trash/TrashRules.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace {

using Clock = std::chrono::steady_clock;

/// How long cached mount information is used. Only checks that need not be exact use it.
constexpr std::chrono::seconds cacheLifetime{1};

bool mayChange(int folder) {
    return faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) == 0;
}

/// Makes a folder writable for its owner during a move to another parent, which rewrites its ".." entry.
class TemporarilyWritable {
public:
    explicit TemporarilyWritable(const TrashItem& item) : m_mode(item.status.mode & 07777U) {
        const uid_t user = geteuid();
        if (item.status.isFolder() && user != 0 && item.status.owner == user && (m_mode & S_IWUSR) == 0) {
            m_path = "/proc/self/fd/" + std::to_string(item.item.number());
            if (chmod(m_path.c_str(), m_mode | S_IWUSR) != 0) {
                m_path.clear();
            }
        }
    }
    ~TemporarilyWritable() {
        if (!m_path.empty()) {
            static_cast<void>(chmod(m_path.c_str(), m_mode));
        }
    }
    TemporarilyWritable(const TemporarilyWritable&) = delete;
    TemporarilyWritable& operator=(const TemporarilyWritable&) = delete;

private:
    mode_t m_mode;
    std::string m_path;
};

/// Whether the user may list the folder and remove its entries.
bool isOpenToUser(const TrashItem& item) {
    return !item.status.isFolder() ||
           faccessat(item.parent.number(), item.name.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

/// Moves an item within its file system; sets `isCrossDevice` if the Trash is on another one.
std::optional<TrashError> moveByRename(const TrashItem& item, const TrashFolder& trash, const std::stop_token& stop,
                                       bool& isCrossDevice) {
    const std::optional<std::string> path = trash.pathInInfo(item.path);
    if (!path) {
        return TrashError::pathTooLong;
    }
    FolderSurvey survey;
    if (item.status.isFolder()) {
        if (const auto error = surveyFolder(item, survey, stop)) {
            return error;
        }
    }
    if (!item.isInPlace()) {
        return TrashError::changed;
    }
    const TemporarilyWritable writable(item);
    const int parent = item.parent.number();
    const TrashFolder::Taken taken = trash.take(parent, item.name.c_str(), item.status.identity, item.name, *path);
    isCrossDevice = taken.isCrossDevice;
    if (taken.error || taken.isCrossDevice) {
        return taken.error;
    }
    // The descriptor was opened before the move, so it refers to the item that was confirmed.
    const std::optional<FileStatus> held = fileStatus(item.item.number(), "");
    const std::optional<FileStatus> moved = fileStatus(trash.files(), taken.name.c_str());
    if (moved && held && moved->identity != held->identity) {
        // If something else has that name by now, the item stays in the Trash with its .trashinfo file.
        static_cast<void>(trash.putBack(taken.name, parent, item.name.c_str(), moved->identity));
        return TrashError::changed;
    }
    if (item.status.isFolder()) {
        recordDirectorySize(trash, taken.name, survey.allocated);
    }
    return {};
}

}  // namespace

std::optional<TrashError> FreedesktopTrash::refusal(const FileURL& url) {
    TrashItem item;
    if (const auto error = openTrashItem(url, item)) {
        return error;
    }
    if (const auto error = refusalReason(item, m_home, recentMounts())) {
        return error;
    }
    TrashVolume volume;
    const Method method = methodFor(item, volume);
    if (method == Method::intoVolume) {
        return {};
    }
    if (method == Method::byCopy && !isOpenToUser(item)) {
        return TrashError::closedInside;
    }
    const Descriptor nearest = TrashFolder::nearestToHomeTrash(m_home);
    if (!nearest.isOpen()) {
        return TrashError::noHome;
    }
    const Descriptor files = Descriptor(openat(nearest.number(), "files", O_PATH | O_DIRECTORY | O_CLOEXEC));
    const Descriptor info = Descriptor(openat(nearest.number(), "info", O_PATH | O_DIRECTORY | O_CLOEXEC));
    const bool isUsable = files.isOpen() && info.isOpen() ? mayChange(files.number()) && mayChange(info.number())
                                                          : mayChange(nearest.number());
    return isUsable ? std::nullopt : std::optional(TrashError::noTrash);
}

std::optional<TrashError> FreedesktopTrash::move(const FileURL& url, const FileIdentity& wanted,
                                                 const Progress& progress, const std::stop_token& stop) {
    TrashItem item;
    if (const auto error = openTrashItem(url, item)) {
        return error;
    }
    if (item.status.identity != wanted) {
        return TrashError::changed;
    }
    if (const auto error = refusalReason(item, m_home, currentMounts())) {
        return error;
    }
    if (stop.stop_requested()) {
        return TrashError::stopped;
    }
    TrashVolume volume;
    const Method method = methodFor(item, volume);
    bool isCrossDevice = method == Method::byCopy;
    if (method == Method::intoVolume) {
        TrashFolder trash;
        const std::optional<TrashError> error = trash.openOnVolume(volume);
        if (!error) {
            removeStaleStagingOnce(trash);
            const auto result = moveByRename(item, trash, stop, isCrossDevice);
            if (!isCrossDevice) {
                return result;
            }
        } else if (*error != TrashError::noTrash) {
            return error;
        }
    }
    TrashFolder trash;
    if (const auto error = openHome(trash)) {
        return error;
    }
    if (method == Method::intoHome) {
        const auto result = moveByRename(item, trash, stop, isCrossDevice);
        if (!isCrossDevice) {
            return result;
        }
    }
    return copyToTrash(item, trash, progress, stop);
}

FreedesktopTrash::Method FreedesktopTrash::methodFor(const TrashItem& item, TrashVolume& volume) {
    // The folder's device, because some layered file systems report other device numbers for files.
    const std::uint64_t device = item.parentStatus.identity.device;
    const Descriptor nearest = TrashFolder::nearestToHomeTrash(m_home);
    const std::optional<FileStatus> home = nearest.isOpen() ? fileStatus(nearest.number(), "") : std::nullopt;
    if (home && home->identity.device == device) {
        return Method::intoHome;
    }
    volume = volumeOf(item.parent.number());
    const std::optional<FileStatus> top = volume.top.isOpen() ? fileStatus(volume.top.number(), "") : std::nullopt;
    return top && top->identity.device == device && isShownAt(volume) ? Method::intoVolume : Method::byCopy;
}

std::optional<TrashError> FreedesktopTrash::openHome(TrashFolder& trash) {
    const std::optional<TrashError> error = trash.openHome(m_home);
    if (!error) {
        removeStaleStagingOnce(trash);
    }
    return error;
}

bool FreedesktopTrash::isShownAt(const TrashVolume& volume) {
    const std::lock_guard lock(m_mutex);
    const Clock::time_point now = Clock::now();
    if (m_volumeAsked != volume.path || now - m_volumeRead > cacheLifetime) {
        m_isVolumeShown = isTrashShownAt(volume.path);
        m_volumeAsked = volume.path;
        m_volumeRead = now;
    }
    return m_isVolumeShown;
}

std::vector<Mount> FreedesktopTrash::recentMounts() {
    const std::lock_guard lock(m_mutex);
    const Clock::time_point now = Clock::now();
    if (m_mounts.empty() || now - m_mountsRead > cacheLifetime) {
        m_mounts = currentMounts();
        m_mountsRead = now;
    }
    return m_mounts;
}

void FreedesktopTrash::removeStaleStagingOnce(const TrashFolder& trash) {
    const std::optional<FileStatus> status = fileStatus(trash.root(), "");
    if (!status) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (std::find(m_cleaned.begin(), m_cleaned.end(), status->identity) == m_cleaned.end()) {
        m_cleaned.push_back(status->identity);
        removeStaleStaging(trash.root());
    }
}
