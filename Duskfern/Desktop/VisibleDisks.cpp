#include "Desktop/VisibleDisks.h"

#include "Foundation/FileURL.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace {

using Names = std::string_view;

/// File systems without a local block device, on which people keep files.
constexpr std::array<Names, 21> disksWithoutDevice{
    "nfs",    "nfs4",                                       // Unix servers
    "cifs",   "smb3",     "smbfs",                          // Windows servers
    "afs",    "ceph",     "coda",   "glusterfs", "lustre",  // file systems spread over servers
    "beegfs", "orangefs", "davfs",                          // likewise, and WebDAV
    "9p",     "virtiofs", "vboxsf", "vmhgfs",    "prl_fs",  // folders that the host shares with a virtual machine
    "zfs",    "bcachefs",                                   // pools of devices
    "ubifs",                                                // flash memory without a block device
};

/// What follows "fuse." for file systems that are none of a person's disks.
constexpr std::array<Names, 22> fuseLayers{
    "gvfsd-fuse",     "portal",                                      // the desktop's window onto other mounts
    "lxcfs",          "vmware-vmblock",                              // made up by services
    "snapfuse",       "squashfuse",     "squashfuse_ll", "fuseiso",  // images
    "archivemount",   "ratarmount",                                  // archives shown as folders
    "fuse-overlayfs", "mergerfs",       "unionfs",       "unionfs-fuse", "bindfs",      // other folders, put together
    "encfs",          "gocryptfs",      "cryfs",         "securefs",     "cppcryptfs",  // another folder, encrypted
    "rofiles-fuse",   "borgfs",  // another folder, made read-only; a backup's files
};

/// Image formats that package and live systems mount.
constexpr std::array<Names, 3> imageTypes{"squashfs", "erofs", "cramfs"};

/// Where the system mounts what it needs for itself.
constexpr std::array<Names, 11> systemPlaces{
    "/boot",        "/efi",                             // what the machine starts from
    "/run",         "/dev",           "/proc", "/sys",  // the running system's state
    "/snap",        "/var/lib/snapd",                   // programs as images
    "/lib/live",    "/usr/lib/live",                    // the medium of a live system
    "/usr/lib/wsl",                                     // drivers of the host
};

/// Where people's disks and images are mounted.
constexpr std::array<Names, 3> mediaPlaces{"/run/media", "/media", "/mnt"};

bool contains(const auto& names, Names name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isInAny(Names path, const auto& folders) {
    return std::any_of(folders.begin(), folders.end(), [&](Names folder) { return isAtOrBelow(path, folder); });
}

bool isOnDevice(const Mount& mount) {
    return mount.source.starts_with("/dev/") && mount.source != "/dev/fuse";
}

bool isFuseDisk(const Mount& mount) {
    if (mount.type == "fuse") {
        return true;
    }
    const Names type = mount.type;
    return type.starts_with("fuse.") && !type.ends_with(".AppImage") && !contains(fuseLayers, type.substr(5));
}

bool isDisk(const Mount& mount, const std::function<bool(const std::string&)>& isFolder) {
    if (mount.target == "/") {
        return true;
    }
    const bool wherePeopleMount = isInAny(mount.target, mediaPlaces);
    if (mount.type == "autofs" || mount.target.starts_with("/tmp/.mount_") ||
        (!wherePeopleMount && (isInAny(mount.target, systemPlaces) || contains(imageTypes, mount.type)))) {
        return false;
    }
    if (isOnDevice(mount)) {
        return mount.root == "/" || isFolder(mount.target);
    }
    return contains(disksWithoutDevice, mount.type) || isFuseDisk(mount);
}

/// What makes two rows the same file system. The datasets of a pool have one device number each, and mounting a
/// server's folder twice may give it two.
std::string shared(const Mount& mount) {
    if (mount.type == "zfs") {
        return "zfs " + mount.source.substr(0, mount.source.find('/'));
    }
    return isOnDevice(mount) || mount.type.starts_with("fuse") ? std::string() : mount.type + ' ' + mount.source;
}

bool isSameFileSystem(const Mount& a, const Mount& b) {
    return a.device == b.device || (!shared(a).empty() && shared(a) == shared(b));
}

/// Whether `a` says better than `b` where their file system is.
bool isBetter(const Mount& a, const Mount& b) {
    const auto rank = [](const Mount& mount) {
        return std::tuple(mount.target != "/", mount.root != "/", mount.isMarkedHidden, mount.target.size());
    };
    return rank(a) < rank(b);
}

}  // namespace

std::vector<Mount> visibleMounts(const std::vector<Mount>& table,
                                 const std::function<bool(const std::string&)>& isFolder) {
    std::vector<const Mount*> disks;
    for (const Mount& mount : table) {
        // A later mount covers what was mounted there, or further below, before.
        std::erase_if(disks, [&](const Mount* earlier) {
            return mount.target == "/" ? earlier->target == "/" : isAtOrBelow(earlier->target, mount.target);
        });
        if (isDisk(mount, isFolder)) {
            disks.push_back(&mount);
        }
    }
    std::vector<Mount> visible;
    for (const Mount* disk : disks) {
        const bool isBest = std::none_of(disks.begin(), disks.end(), [&](const Mount* other) {
            return other != disk && isSameFileSystem(*other, *disk) && isBetter(*other, *disk);
        });
        const bool isFirst = std::none_of(visible.begin(), visible.end(),
                                          [&](const Mount& other) { return isSameFileSystem(other, *disk); });
        if (isBest && isFirst && (!disk->isMarkedHidden || disk->target == "/")) {
            visible.push_back(*disk);
        }
    }
    return visible;
}
