#include "Desktop/TrashVisibility.h"

#include "Desktop/GioSupport.h"

#include <gio/gunixmounts.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace {

// Renamed in GLib 2.84, where the old names are deprecated.
#if GLIB_CHECK_VERSION(2, 84, 0)
constexpr auto mountAt = g_unix_mount_entry_at;
constexpr auto optionsOf = g_unix_mount_entry_get_options;
constexpr auto isSystemInternal = g_unix_mount_entry_is_system_internal;
constexpr auto freeMount = g_unix_mount_entry_free;
#else
constexpr auto mountAt = g_unix_mount_at;
constexpr auto optionsOf = g_unix_mount_get_options;
constexpr auto isSystemInternal = g_unix_mount_is_system_internal;
constexpr auto freeMount = g_unix_mount_free;
#endif

struct FreeMount {
    void operator()(GUnixMountEntry* mount) const { freeMount(mount); }
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
    const std::unique_ptr<GUnixMountEntry, FreeMount> mount(mountAt(path.c_str(), nullptr));
    if (mount == nullptr) {
        return false;
    }
    const char* const options = optionsOf(mount.get());
    if (options != nullptr && hasOption(options, "x-gvfs-trash")) {
        return true;
    }
    if (options != nullptr && hasOption(options, "x-gvfs-notrash")) {
        return false;
    }
    return !isSystemInternal(mount.get());
}
