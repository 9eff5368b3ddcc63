#include "Desktop/TrashVisibility.h"

#include "Desktop/GioSupport.h"

#include <gio/gunixmounts.h>

#include <algorithm>
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
