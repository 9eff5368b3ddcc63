#include "Foundation/FileStatus.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <algorithm>
#include <limits>

std::optional<FileStatus> fileStatus(int directory, const char* name) {
    struct statx status {};
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    if (statx(directory, name, flags, STATX_TYPE | STATX_BLOCKS, &status) != 0) {
        return std::nullopt;
    }
    // The kernel counts blocks of 512 bytes whatever those of the file system are. A file system that does not know
    // them says so, and the length has to do.
    const bool known = (status.stx_mask & STATX_BLOCKS) != 0;
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    const std::uint64_t bytes = known ? std::min<std::uint64_t>(status.stx_blocks, most / 512) * 512
                                      : std::min<std::uint64_t>(status.stx_size, most);
    return FileStatus{status.stx_mode, static_cast<std::int64_t>(bytes)};
}
