#include "Trash/TrashFolder.h"

#include "Foundation/OpenPath.h"
#include "Trash/SafeRename.h"
#include "Trash/TrashFailure.h"
#include "Trash/TrashInfoFile.h"
#include "Trash/TrashNames.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <random>

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int maximumAttempts = 200;

/// A random number for a file name, so that a free name is found quickly however many are taken.
std::uint32_t randomNumber() {
    thread_local std::mt19937 random{std::random_device{}()};
    return std::uniform_int_distribution<std::uint32_t>(2, 999'999'999)(random);
}

std::size_t longestName(int folder) {
    constexpr std::size_t usual = 255;
    struct statvfs status {};
    // Some file systems count characters or UTF-16 units instead of bytes.
    return fstatvfs(folder, &status) == 0 && status.f_namemax > 20 ? std::min<std::size_t>(status.f_namemax, usual)
                                                                   : usual;
}

/// Opens the folder `name` of `parent`; creates it, for the user only, if it is missing, and then syncs `parent`. Not
/// open, with errno set, on failure.
Descriptor openOrMake(int parent, const char* name, int extraFlags) {
    const bool isNew = mkdirat(parent, name, S_IRWXU) == 0;
    const int number = errno;
    Descriptor folder(openat(parent, name, folderFlags | extraFlags));
    if (isNew) {
        static_cast<void>(syncFolder(parent));
    } else if (!folder.isOpen() && errno == ENOENT) {
        errno = number;
    }
    return folder;
}

/// The same for a path; missing parent folders are created too.
Descriptor openOrMake(const FileURL& url) {
    Descriptor folder = openPath(url, folderFlags);
    if (folder.isOpen() || errno != ENOENT || url.path() == "/") {
        return folder;
    }
    const Descriptor parent = openOrMake(url.deletingLastPathComponent());
    return parent.isOpen() ? openOrMake(parent.number(), std::string(url.lastPathComponent()).c_str(), 0)
                           : Descriptor();
}

/// Whether there is no such folder. Without descriptors that cannot be found out.
bool isMissing(const FileURL& url) {
    return !openPath(url, O_PATH | O_DIRECTORY).isOpen() && !isShortage(errno);
}

/// Whether a Trash at the top of a file system belongs to the user, or to root as all files do on some file systems.
bool isOwnFolder(int folder) {
    const std::optional<FileStatus> status = fileStatus(folder, "");
    return status && status->isFolder() && (status->owner == geteuid() || status->owner == 0);
}

}  // namespace

std::optional<TrashError> TrashFolder::openHome(const TrashHome& home) {
    if (isMissing(home.trash()) && isMissing(home.home) && isAtOrBelow(home.dataHome.path(), home.home.path())) {
        return TrashError::noHome;
    }
    m_root = openOrMake(home.trash());
    if (!m_root.isOpen()) {
        const int number = errno;
        const Descriptor nearest = nearestToHomeTrash(home);
        return trashFolderErrorOf(number, nearest.number());
    }
    return openInside();
}

std::optional<TrashError> TrashFolder::openInside() {
    m_files = openOrMake(m_root.number(), "files", 0);
    if (!m_files.isOpen()) {
        return trashFolderErrorOf(errno, m_root.number());
    }
    m_info = openOrMake(m_root.number(), "info", 0);
    if (!m_info.isOpen()) {
        return trashFolderErrorOf(errno, m_root.number());
    }
    return {};
}

std::optional<TrashError> TrashFolder::openOnVolume(const TrashVolume& volume) {
    m_top = volume.path;
    const std::string user = std::to_string(geteuid());
    const std::optional<FileStatus> shared = fileStatus(volume.top.number(), ".Trash");
    if (shared && shared->isFolder() && (shared->mode & S_ISVTX) != 0) {
        const Descriptor folder(openat(volume.top.number(), ".Trash", O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        m_root = folder.isOpen() ? openOrMake(folder.number(), user.c_str(), O_NOFOLLOW) : Descriptor();
        if (m_root.isOpen() && isOwnFolder(m_root.number()) && !openInside()) {
            return {};
        }
    }
    m_root = openOrMake(volume.top.number(), (".Trash-" + user).c_str(), O_NOFOLLOW);
    if (!m_root.isOpen()) {
        return trashFolderErrorOf(errno, volume.top.number());
    }
    return isOwnFolder(m_root.number()) ? openInside() : TrashError::noTrash;
}

Descriptor TrashFolder::nearestToHomeTrash(const TrashHome& home) {
    for (FileURL url = home.trash();; url = url.deletingLastPathComponent()) {
        Descriptor folder = openPath(url, O_PATH | O_DIRECTORY);
        if (folder.isOpen() || url.path() == "/") {
            return folder;
        }
        if (url == home.home) {
            return {};
        }
    }
}

std::optional<std::string> TrashFolder::pathInInfo(const std::string& path) const {
    if (m_top.empty()) {
        return path;
    }
    const std::string prefix = m_top == "/" ? m_top : m_top + "/";
    return path.starts_with(prefix) ? std::optional(path.substr(prefix.size())) : std::nullopt;
}

/// Writes a .trashinfo file under the first name that neither another one nor an item has.
std::optional<TrashError> TrashFolder::writeInfo(std::string_view original, const std::string& text,
                                                 std::string& name) const {
    const std::size_t longest = longestName(m_info.number());
    TrashInfoFile info(m_root.number(), m_info.number());
    if (const int number = info.write(text)) {
        return trashFolderErrorOf(number, m_root.number());
    }
    std::string wanted(original);
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        name = nameInTrash(wanted, attempt == 0 ? std::nullopt : std::optional(randomNumber()), longest);
        if (isTaken(m_files.number(), name.c_str())) {
            continue;
        }
        const int number = info.link(std::string(name).append(trashInfoSuffix));
        if (number == 0) {
            if (const int unsynced = syncFolder(m_info.number())) {
                unlinkat(m_info.number(), std::string(name).append(trashInfoSuffix).c_str(), 0);
                return trashFolderErrorOf(unsynced, m_root.number());
            }
            return {};
        }
        if (number == EILSEQ || number == EINVAL || number == ENAMETOOLONG) {
            // The file system rejects the name, for instance because it requires UTF-8.
            wanted = plainName(cutName(wanted, longest / 2));
        } else if (number != EEXIST) {
            return trashFolderErrorOf(number, m_root.number());
        }
    }
    return TrashError::noTrash;
}

TrashFolder::Taken TrashFolder::take(int fromFolder, const char* from, const FileIdentity& item,
                                     std::string_view original, const std::string& path) const {
    Taken taken;
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        taken.error = writeInfo(original, trashInfoText(path, std::time(nullptr)), taken.name);
        if (taken.error) {
            return taken;
        }
        const int number = renameWithoutReplacing(fromFolder, from, m_files.number(), taken.name.c_str(), item);
        if (number == 0) {
            // The move has succeeded even if a sync fails.
            static_cast<void>(syncFolder(m_files.number()));
            static_cast<void>(syncFolder(fromFolder));
            return taken;
        }
        unlinkat(m_info.number(), std::string(taken.name).append(trashInfoSuffix).c_str(), 0);
        if (number == EXDEV) {
            taken.isCrossDevice = true;
            return taken;
        }
        if (number != EEXIST) {
            taken.error = renameError(number, fromFolder);
            return taken;
        }
    }
    taken.error = TrashError::noTrash;
    return taken;
}

TrashError TrashFolder::renameError(int number, int fromFolder) const {
    switch (number) {
        case EBUSY:
            return TrashError::mounted;
        case EINVAL:
        case ELOOP:
            return TrashError::ofTrash;
        case EACCES:
        case EPERM:
        case EROFS:
            if (faccessat(fromFolder, ".", W_OK | X_OK, AT_EACCESS) == 0 &&
                faccessat(m_files.number(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
                return TrashError::noTrash;
            }
            break;
        default:
            break;
    }
    return trashErrorOf(number, m_root.number());
}

bool TrashFolder::putBack(const std::string& name, int toFolder, const char* to, const FileIdentity& item) const {
    if (renameWithoutReplacing(m_files.number(), name.c_str(), toFolder, to, item) != 0) {
        return false;
    }
    static_cast<void>(syncFolder(toFolder));
    unlinkat(m_info.number(), std::string(name).append(trashInfoSuffix).c_str(), 0);
    return true;
}
