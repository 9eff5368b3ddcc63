#include "Foundation/HiddenPlaces.h"

#include <algorithm>
#include <array>

namespace {

/// Folders in "/" that hold the running system or other disks.
constexpr std::array<std::string_view, 7> systemFolders{
    "/dev",         // devices
    "/proc",        // processes
    "/sys",         // the kernel's own view of the machine
    "/run",         // the runtime state of services, in memory
    "/media",       // other disks, measured on their own
    "/mnt",         // likewise
    "/lost+found",  // what a file system check found
};

/// Kernel file systems without files on a disk: what they show takes no space.
constexpr std::array<std::string_view, 22> pseudoFileSystems{
    "proc",    "sysfs",    "cgroup",    "cgroup2", "devpts",      "devtmpfs",   "debugfs",
    "tracefs", "bpf",      "pstore",    "mqueue",  "hugetlbfs",   "securityfs", "configfs",
    "fusectl", "efivarfs", "selinuxfs", "nsfs",    "binfmt_misc", "rpc_pipefs", "binder",
    "autofs",  // a trigger: entering it would mount something
};

}  // namespace

HiddenPlaces::HiddenPlaces(std::string_view root, const std::vector<Mount>& mounts,
                           const std::vector<std::string>& others) {
    std::string prefix(root);
    if (prefix.empty() || prefix.back() != '/') {
        prefix += '/';
    }
    const auto hide = [&](std::string_view path) {
        if (path.size() <= prefix.size() || !path.starts_with(prefix)) {
            return;
        }
        path.remove_prefix(prefix.size());
        const size_t slash = path.rfind('/');
        const std::string_view folder = slash == std::string_view::npos ? "" : path.substr(0, slash);
        m_longestFolder = std::max(m_longestFolder, folder.size());
        m_byFolder[std::string(folder)].insert(path.substr(folder.empty() ? 0 : slash + 1));
    };
    std::for_each(systemFolders.begin(), systemFolders.end(), hide);
    std::for_each(others.begin(), others.end(), hide);
    for (const Mount& mount : mounts) {
        if (std::find(pseudoFileSystems.begin(), pseudoFileSystems.end(), mount.type) != pseudoFileSystems.end()) {
            hide(mount.target);
        }
    }
}

const NameSet* HiddenPlaces::namesIn(const std::string& folder) const {
    const auto found = m_byFolder.find(folder);
    return found == m_byFolder.end() ? nullptr : &found->second;
}
