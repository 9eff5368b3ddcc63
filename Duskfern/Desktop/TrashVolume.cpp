#include "Desktop/TrashVolume.h"

#include "Desktop/GioSupport.h"
#include "Desktop/TrashItem.h"

#include <fcntl.h>
#include <gio/gunixmounts.h>

#include <memory>
#include <string_view>

namespace {

struct FreeMount {
    void operator()(GUnixMountEntry* mount) const { g_unix_mount_free(mount); }
};

bool hasOption(std::string_view options, std::string_view wanted) {
    while (!options.empty()) {
        const std::size_t end = std::min(options.find(','), options.size());
        if (options.substr(0, end) == wanted) {
            return true;
        }
        options.remove_prefix(std::min(end + 1, options.size()));
    }
    return false;
}

}  // namespace

TrashVolume volumeOf(int folder) {
    Descriptor here(openat(folder, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    while (here.isOpen()) {
        const std::optional<FileStatus> status = fileStatus(here.number(), "");
        Descriptor above(openat(here.number(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        const std::optional<FileStatus> outer = above.isOpen() ? fileStatus(above.number(), "") : std::nullopt;
        if (!status || !outer) {
            break;
        }
        // Old kernels do not mark mount points; there another device must do.
        if (status->isMountPoint || outer->identity == status->identity ||
            outer->identity.device != status->identity.device) {
            std::optional<std::string> path = pathOfOpen(here.number());
            return path ? TrashVolume{std::move(here), std::move(*path)} : TrashVolume();
        }
        here = std::move(above);
    }
    return {};
}

bool isTrashShownAt(const std::string& path) {
    const std::unique_ptr<GUnixMountEntry, FreeMount> mount(g_unix_mount_at(path.c_str(), nullptr));
    if (mount == nullptr) {
        return false;
    }
    const char* const options = g_unix_mount_get_options(mount.get());
    if (options != nullptr && hasOption(options, "x-gvfs-trash")) {
        return true;
    }
    if (options != nullptr && hasOption(options, "x-gvfs-notrash")) {
        return false;
    }
    return !g_unix_mount_is_system_internal(mount.get());
}
