#include "Desktop/VisibleDisks.h"

#include "Foundation/FileURL.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace {

using Names = std::string_view;

/// Network and other file systems without a local block device, on which users keep files.
constexpr std::array<Names, 21> disksWithoutDevice{
    "nfs",    "nfs4",                                       // Unix servers
    "cifs",   "smb3",     "smbfs",                          // Windows servers
    "afs",    "ceph",     "coda",   "glusterfs", "lustre",  // file systems spread over servers
    "beegfs", "orangefs", "davfs",                          // likewise, and WebDAV
    "9p",     "virtiofs", "vboxsf", "vmhgfs",    "prl_fs",  // folders that the host shares with a virtual machine
    "zfs",    "bcachefs",                                   // pools of devices
    "ubifs",                                                // flash memory without a block device
};

/// FUSE programs whose file systems are not disks of a user.
constexpr std::array<Names, 30> fuseLayers{
    "gvfsd-fuse",     "gvfs-fuse-daemon", "kio-fuse",      "portal",    // the desktop's window onto other mounts
    "lxcfs",          "vmware-vmblock",                                 // made up by services
    "snapfuse",       "squashfuse",       "squashfuse_ll", "fuseiso",   // images
    "dislocker",      "veracrypt",        "truecrypt",                  // a disk's contents as one file
    "archivemount",   "ratarmount",       "rar2fs",        "avfsd",     // archives shown as folders
    "fuse-overlayfs", "mergerfs",         "mhddfs",        "unionfs",   // other folders, put together
    "unionfs-fuse",   "bindfs",                                         // likewise
    "encfs",          "gocryptfs",        "cryfs",         "securefs",  // another folder, encrypted
    "cppcryptfs",                                                       // likewise
    "rofiles-fuse",   "borgfs",                                         // made read-only; a backup's files
};

/// Image formats that package and live systems mount.
constexpr std::array<Names, 3> imageTypes{"squashfs", "erofs", "cramfs"};

/// Where the system mounts file systems for its own use.
constexpr std::array<Names, 13> systemPlaces{
    "/boot",        "/efi",           "/esp",           // what the machine starts from
    "/recovery",                                        // what it is repaired from
    "/run",         "/dev",           "/proc", "/sys",  // the running system's state
    "/snap",        "/var/lib/snapd",                   // programs as images
    "/lib/live",    "/usr/lib/live",                    // the medium of a live system
    "/usr/lib/wsl",                                     // drivers of the host
};

/// Where users' disks and images are mounted.
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

/// The program behind a FUSE file system: "sshfs" for "fuse.sshfs". With the plain type "fuse" it is the source, or the
/// part of it before "#" ("sshfs#host:/").
Names programName(const Mount& mount) {
    const Names type = mount.type;
    return type == "fuse" ? Names(mount.source).substr(0, mount.source.find('#')) : type.substr(type.find('.') + 1);
}

bool isFuseDisk(const Mount& mount) {
    const Names program = programName(mount);
    return isFuse(mount) && !program.ends_with(".AppImage") && !contains(fuseLayers, program);
}

bool isDisk(const Mount& mount) {
    if (mount.target == "/") {
        return true;
    }
    const bool wherePeopleMount = isInAny(mount.target, mediaPlaces);
    if (mount.type == "autofs" || mount.target.starts_with("/tmp/.mount_") ||
        (!wherePeopleMount && (isInAny(mount.target, systemPlaces) || contains(imageTypes, mount.type)))) {
        return false;
    }
    return isOnDevice(mount) || contains(disksWithoutDevice, mount.type) || isFuseDisk(mount);
}

bool isSnapshot(const Mount& mount) {
    return mount.type == "zfs" && mount.source.find('@') != std::string::npos;
}

/// A key that is equal for all rows of one file system whose device numbers may differ: datasets and snapshots of a
/// pool, and a server's folder that is mounted twice. Empty where the device number is enough.
std::string sharedName(const Mount& mount) {
    if (mount.type == "zfs") {
        return "zfs " + mount.source.substr(0, mount.source.find_first_of("/@"));
    }
    return isOnDevice(mount) || isFuse(mount) ? std::string() : mount.type + ' ' + mount.source;
}

/// Whether `a` is preferred over `b` for querying their file system.
bool isBetter(const Mount& a, const Mount& b) {
    const auto rank = [](const Mount& mount) {
        return std::tuple(mount.target != "/", isSnapshot(mount), mount.root != "/", mount.isMarkedHidden,
                          mount.target.size());
    };
    return rank(a) < rank(b);
}

/// A row of the mount table that is a disk.
struct Disk {
    const Mount* mount;
    std::string sharedName;

    [[nodiscard]] bool isSameFileSystem(const Disk& other) const {
        return mount->device == other.mount->device || (!sharedName.empty() && sharedName == other.sharedName);
    }
};

/// The disks that are not covered by a later mount.
std::vector<Disk> reachableDisks(const std::vector<Mount>& table) {
    std::vector<Disk> disks;
    for (const Mount& mount : table) {
        // A mount covers earlier mounts at or below its mount point.
        std::erase_if(disks, [&](const Disk& earlier) {
            return mount.target == "/" ? earlier.mount->target == "/"
                                       : isAtOrBelow(earlier.mount->target, mount.target);
        });
        if (isDisk(mount)) {
            disks.push_back({&mount, sharedName(mount)});
        }
    }
    return disks;
}

/// Groups the rows by file system.
std::vector<std::vector<Disk>> byFileSystem(const std::vector<Disk>& disks) {
    std::vector<std::vector<Disk>> groups;
    for (const Disk& disk : disks) {
        const auto holdsOther = [&](const std::vector<Disk>& group) {
            return std::any_of(group.begin(), group.end(),
                               [&](const Disk& other) { return other.isSameFileSystem(disk); });
        };
        const auto group = std::find_if(groups.begin(), groups.end(), holdsOther);
        (group == groups.end() ? groups.emplace_back() : *group).push_back(disk);
    }
    return groups;
}

}  // namespace

bool isFuse(const Mount& mount) {
    return mount.type == "fuse" || mount.type.starts_with("fuse.");
}

std::vector<std::vector<Mount>> visibleDisks(const std::vector<Mount>& table) {
    std::vector<std::vector<Disk>> groups = byFileSystem(reachableDisks(table));
    for (std::vector<Disk>& group : groups) {
        std::stable_sort(group.begin(), group.end(),
                         [](const Disk& a, const Disk& b) { return isBetter(*a.mount, *b.mount); });
    }
    // Sorts file systems by the row of their preferred mount.
    std::sort(groups.begin(), groups.end(),
              [](const auto& a, const auto& b) { return a.front().mount < b.front().mount; });
    std::vector<std::vector<Mount>> visible;
    for (const std::vector<Disk>& group : groups) {
        const auto isShown = [](const Disk& disk) { return !disk.mount->isMarkedHidden || disk.mount->target == "/"; };
        if (!isShown(group.front())) {
            continue;
        }
        std::vector<Mount>& mounts = visible.emplace_back();
        for (const Disk& disk : group) {
            if (isShown(disk)) {
                mounts.push_back(*disk.mount);
            }
        }
    }
    return visible;
}

std::vector<FileURL> diskFolders() {
    std::vector<FileURL> folders;
    for (const std::vector<Mount>& mounts : visibleDisks(currentMounts())) {
        const Mount& best = mounts.front();
        // A mounted part may be a single file, but on btrfs it is a subvolume.
        if (best.target == "/" || best.root == "/" || best.type == "btrfs") {
            folders.emplace_back(best.target);
        }
    }
    return folders;
}
