#include "Desktop/VolumeValues.h"

#include "Desktop/GioSupport.h"
#include "Desktop/VolumeLabel.h"
#include "Foundation/FileStatus.h"
#include "Foundation/OpenPath.h"

#include <fcntl.h>
#include <sys/statvfs.h>

#include <limits>

namespace {

/// `blocks` × `size`, limited to the type's maximum, because file systems may report anything. A count with the highest
/// bit set is an underflow and gives -1.
std::int64_t bytes(std::uint64_t blocks, std::uint64_t size) {
    constexpr std::int64_t maximum = std::numeric_limits<std::int64_t>::max();
    if (blocks > maximum) {
        return -1;
    }
    std::int64_t product = 0;
    return __builtin_mul_overflow(blocks, size, &product) ? maximum : product;
}

/// The operating system's name, shown for the disk at "/".
std::string systemName() {
    const GPtr<char> name(g_get_os_info(G_OS_INFO_KEY_NAME));
    return name == nullptr ? std::string() : name.get();
}

/// Whether the open folder still belongs to the mount. After an unmount, the disk below would be queried instead.
/// Unknown before Linux 5.8.
bool isStillMounted(const Mount& mount, int folder) {
    if (mount.target == "/" || mount.id < 0) {
        return true;
    }
    const std::optional<std::uint64_t> number = mountNumber(folder);
    return !number || *number == static_cast<std::uint64_t>(mount.id);
}

}  // namespace

std::optional<VolumeValues> valuesOf(const Mount& mount) {
    const Descriptor folder = openPath(FileURL(mount.target), O_PATH | O_DIRECTORY);
    struct statvfs status {};
    if (!folder.isOpen() || !isStillMounted(mount, folder.number()) || fstatvfs(folder.number(), &status) != 0) {
        return std::nullopt;
    }
    VolumeValues values;
    values.total = bytes(status.f_blocks, status.f_frsize);
    values.available = bytes(status.f_bavail, status.f_frsize);
    std::string name = volumeLabel(mount, folder.number());
    if (name.empty() && mount.target == "/") {
        name = systemName();
    }
    if (!name.empty()) {
        values.name = displayText(name);
    }
    return values;
}
