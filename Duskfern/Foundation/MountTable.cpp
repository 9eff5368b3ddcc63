#include "Foundation/MountTable.h"

#include "Foundation/FileStatus.h"
#include "Foundation/FileURL.h"

#include <libmount/libmount.h>

#include <algorithm>
#include <memory>

namespace {

struct FreeTable {
    void operator()(libmnt_table* table) const { mnt_unref_table(table); }
    void operator()(libmnt_iter* iterator) const { mnt_free_iter(iterator); }
};

std::unique_ptr<libmnt_table, FreeTable> emptyTable() {
    std::unique_ptr<libmnt_table, FreeTable> table(mnt_new_table());
    // A malformed line is skipped.
    mnt_table_set_parser_errcb(table.get(), [](libmnt_table*, const char*, int) { return 1; });
    return table;
}

bool hasHideOption(const char* options) {
    return options != nullptr && mnt_optstr_get_option(options, "x-gvfs-hide", nullptr, nullptr) == 0;
}

std::string text(const char* bytes) {
    return bytes == nullptr ? std::string() : bytes;
}

/// After a chroot to a folder that is not a mount point, "/" is missing from the process's mount table.
void addMissingRoot(std::vector<Mount>& mounts) {
    if (std::none_of(mounts.begin(), mounts.end(), [](const Mount& mount) { return mount.target == "/"; })) {
        Mount root;
        if (const std::optional<FileStatus> status = fileStatus(FileURL("/"))) {
            root.device = status->identity.device;
        }
        mounts.insert(mounts.begin(), std::move(root));
    }
}

}  // namespace

std::optional<std::vector<Mount>> readMountTable(const char* mountinfo, const char* fstab) {
    const auto table = emptyTable();
    // With an explicit path, libmount reads the kernel's table instead of /etc/mtab, and adds the entries of the utab.
    if (mnt_table_parse_mtab(table.get(), mountinfo) != 0) {
        return std::nullopt;
    }
    const auto fstabTable = emptyTable();
    mnt_table_parse_fstab(fstabTable.get(), fstab);
    const std::unique_ptr<libmnt_iter, FreeTable> iterator(mnt_new_iter(MNT_ITER_FORWARD));
    std::vector<Mount> mounts;
    libmnt_fs* row = nullptr;
    while (mnt_table_next_fs(table.get(), iterator.get(), &row) == 0) {
        Mount mount;
        mount.id = mnt_fs_get_id(row);
        mount.device = mnt_fs_get_devno(row);
        mount.root = text(mnt_fs_get_root(row));
        mount.target = text(mnt_fs_get_target(row));
        mount.type = text(mnt_fs_get_fstype(row));
        mount.source = text(mnt_fs_get_source(row));
        libmnt_fs* const fstabRow = mnt_table_find_target(fstabTable.get(), mount.target.c_str(), MNT_ITER_FORWARD);
        mount.isMarkedHidden = hasHideOption(mnt_fs_get_options(row)) || hasHideOption(mnt_fs_get_user_options(row)) ||
                               (fstabRow != nullptr && hasHideOption(mnt_fs_get_options(fstabRow)));
        mounts.push_back(std::move(mount));
    }
    addMissingRoot(mounts);
    return mounts;
}

bool holdsMount(std::string_view path, const std::vector<Mount>& table) {
    return std::any_of(table.begin(), table.end(), [&](const Mount& mount) { return isAtOrBelow(mount.target, path); });
}

std::vector<Mount> currentMounts() {
    return readMountTable().value_or(std::vector<Mount>());
}
