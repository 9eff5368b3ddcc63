#include "Trash/FileAttributes.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::array<const char*, 2> accessLists{"system.posix_acl_access", "system.posix_acl_default"};

/// A path for the xattr calls, which take no directory descriptor.
std::string pathOf(int folder, const char* name) {
    return "/proc/self/fd/" + std::to_string(folder) + '/' + name;
}

bool mustBeKept(std::string_view attribute) {
    return attribute.starts_with("user.") || attribute == accessLists[0] || attribute == accessLists[1];
}

/// The attribute names, each ended by a NUL; false with errno set.
bool attributeNames(const std::string& path, std::vector<char>& names) {
    for (;;) {
        const ssize_t size = llistxattr(path.c_str(), nullptr, 0);
        if (size <= 0) {
            names.clear();
            return size == 0 || errno == ENOTSUP;
        }
        names.resize(static_cast<std::size_t>(size));
        const ssize_t count = llistxattr(path.c_str(), names.data(), names.size());
        if (count >= 0) {
            names.resize(static_cast<std::size_t>(count));
            return true;
        }
        if (errno != ERANGE) {
            return false;
        }
    }
}

int copyAttribute(const std::string& from, const std::string& to, const char* name) {
    const ssize_t size = lgetxattr(from.c_str(), name, nullptr, 0);
    if (size < 0) {
        return errno == ENODATA ? 0 : errno;
    }
    std::vector<char> value(static_cast<std::size_t>(size));
    const ssize_t count = lgetxattr(from.c_str(), name, value.data(), value.size());
    if (count < 0 || lsetxattr(to.c_str(), name, value.data(), static_cast<std::size_t>(count), 0) != 0) {
        return errno;
    }
    return 0;
}

int copyExtended(const std::string& from, const std::string& to) {
    std::vector<char> names;
    if (!attributeNames(from, names)) {
        return errno;
    }
    const std::string_view list(names.data(), names.size());
    // Removes an access control list that the copy inherited from its folder but the original does not have.
    for (const char* const accessList : accessLists) {
        if (list.find(accessList) == std::string_view::npos) {
            static_cast<void>(lremovexattr(to.c_str(), accessList));
        }
    }
    for (const char* name = names.data(); name < names.data() + names.size();) {
        const std::string_view attribute = name;
        const int number = copyAttribute(from, to, name);
        if (number != 0 && mustBeKept(attribute)) {
            return number == E2BIG || number == ERANGE || number == EPERM ? ENOTSUP : number;
        }
        name += attribute.size() + 1;
    }
    return 0;
}

}  // namespace

int copyAttributes(int fromFolder, const char* from, int toFolder, const char* to, const struct stat& source) {
    mode_t mode = source.st_mode & 07777U;
    struct stat copy {};
    if (fstatat(toFolder, to, &copy, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    if ((copy.st_uid != source.st_uid || copy.st_gid != source.st_gid) &&
        fchownat(toFolder, to, source.st_uid, source.st_gid, AT_SYMLINK_NOFOLLOW) != 0) {
        // At least the group, if that is permitted.
        [[maybe_unused]] const int result =
            fchownat(toFolder, to, static_cast<uid_t>(-1), source.st_gid, AT_SYMLINK_NOFOLLOW);
        // Without the same owner, a set-uid program would run as another user.
        mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
    }
    if (const int number = copyExtended(pathOf(fromFolder, from), pathOf(toFolder, to))) {
        return number;
    }
    if (!S_ISLNK(source.st_mode) && fchmodat(toFolder, to, mode, 0) != 0) {
        return errno;
    }
    const std::array<timespec, 2> times{source.st_atim, source.st_mtim};
    return utimensat(toFolder, to, times.data(), AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}
