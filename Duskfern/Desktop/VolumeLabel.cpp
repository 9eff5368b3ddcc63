#include "Desktop/VolumeLabel.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <filesystem>

namespace {

/// Symbolic links to devices, named by file system label; maintained by udev.
constexpr const char* labelledDevices = "/dev/disk/by-label";

/// udev writes unsafe characters of a label as "\x20".
std::string unescaped(const std::string& name) {
    std::string plain;
    for (std::size_t at = 0; at < name.size(); ++at) {
        unsigned byte = 0;
        const char* const digits = name.data() + at + 2;
        if (name.compare(at, 2, "\\x") == 0 && at + 4 <= name.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            plain += static_cast<char>(byte);
            at += 3;
        } else {
            plain += name[at];
        }
    }
    return plain;
}

std::string labelOfDevice(const std::string& device) {
    struct stat wanted {};
    if (stat(device.c_str(), &wanted) != 0 || !S_ISBLK(wanted.st_mode)) {
        return {};
    }
    std::error_code failure;
    for (std::filesystem::directory_iterator link(labelledDevices, failure), end; !failure && link != end;
         link.increment(failure)) {
        struct stat labelled {};
        if (stat(link->path().c_str(), &labelled) == 0 && labelled.st_rdev == wanted.st_rdev) {
            return unescaped(link->path().filename().string());
        }
    }
    return {};
}

}  // namespace

std::string volumeLabel(const Mount& mount, int folder) {
    if (mount.type == "zfs") {
        return mount.source.substr(0, mount.source.find('/'));
    }
    if (!mount.source.starts_with("/dev/")) {
        return {};
    }
    std::string label;
    // Several file systems report their label for any of their folders that is open for reading.
    const int readable = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    if (readable >= 0) {
        std::array<char, FSLABEL_MAX + 1> answer{};
        if (ioctl(readable, FS_IOC_GETFSLABEL, answer.data()) == 0) {
            label = answer.data();
        }
        close(readable);
    }
    return label.empty() ? labelOfDevice(mount.source) : label;
}
