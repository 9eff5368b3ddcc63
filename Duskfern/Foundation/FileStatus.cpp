#include "Foundation/FileStatus.h"

#include "Foundation/OpenPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <algorithm>
#include <limits>

bool FileIdentity::isRegularFile() const {
    return S_ISREG(kind);
}

bool FileIdentity::isFolder() const {
    return S_ISDIR(kind);
}

bool FileStatus::isRegularFile() const {
    return S_ISREG(mode);
}

bool FileStatus::isFolder() const {
    return S_ISDIR(mode);
}

std::optional<FileStatus> fileStatus(int directory, const char* name) {
    struct statx status {};
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_EMPTY_PATH;
    constexpr unsigned mask = STATX_TYPE | STATX_MODE | STATX_BLOCKS | STATX_SIZE | STATX_INO | STATX_UID |
                              STATX_NLINK | STATX_MTIME | STATX_CTIME;
    if (statx(directory, name, flags, mask, &status) != 0) {
        return std::nullopt;
    }
    constexpr std::uint64_t maximum = std::numeric_limits<std::int64_t>::max();
    FileStatus result;
    result.mode = status.stx_mode;
    result.identity = {makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino,
                       static_cast<std::uint16_t>(status.stx_mode & S_IFMT)};
    result.owner = status.stx_uid;
    result.modifiedSeconds = status.stx_mtime.tv_sec;
    result.modifiedNanoseconds = status.stx_mtime.tv_nsec;
    result.links = status.stx_nlink;
    result.changedSeconds = status.stx_ctime.tv_sec;
    result.changedNanoseconds = status.stx_ctime.tv_nsec;
    result.isProtected = (status.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0;
    result.isMountPoint = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    result.length = static_cast<std::int64_t>(std::min<std::uint64_t>(status.stx_size, maximum));
    if ((status.stx_mask & STATX_BLOCKS) != 0) {
        // The kernel counts blocks of 512 bytes whatever those of the file system are.
        result.allocated = static_cast<std::int64_t>(std::min<std::uint64_t>(status.stx_blocks, maximum / 512) * 512);
    }
    return result;
}

std::optional<FileStatus> fileStatus(const FileURL& url) {
    const Descriptor folder = openPath(url.deletingLastPathComponent(), O_PATH | O_DIRECTORY);
    if (!folder.isOpen()) {
        return std::nullopt;
    }
    // "/" has no name in its parent folder.
    const std::string name = url.path() == "/" ? std::string() : std::string(url.lastPathComponent());
    return fileStatus(folder.number(), name.c_str());
}

std::optional<std::uint64_t> mountNumber(int descriptor) {
    struct statx status {};
    if (statx(descriptor, "", AT_EMPTY_PATH | AT_NO_AUTOMOUNT, STATX_MNT_ID, &status) != 0 ||
        (status.stx_mask & STATX_MNT_ID) == 0) {
        return std::nullopt;
    }
    return status.stx_mnt_id;
}
