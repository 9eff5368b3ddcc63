#include "Foundation/OpenPath.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

namespace {

/// openat2 is missing in old kernels and some sandboxes; there, only the last component is checked for links.
bool hasOpenat2() {
    static const bool works = [] {
        open_how how{};
        how.flags = O_PATH | O_CLOEXEC;
        const Descriptor root(static_cast<int>(syscall(SYS_openat2, AT_FDCWD, "/", &how, sizeof how)));
        return root.isOpen();
    }();
    return works;
}

Descriptor openPiece(int base, const char* path, int flags) {
    if ((flags & O_NOFOLLOW) == 0 || !hasOpenat2()) {
        return Descriptor(openat(base, path, flags));
    }
    open_how how{};
    how.flags = static_cast<unsigned>(flags);
    how.resolve = RESOLVE_NO_SYMLINKS;
    return Descriptor(static_cast<int>(syscall(SYS_openat2, base, path, &how, sizeof how)));
}

}  // namespace

Descriptor openPathAt(int base, std::string_view path, int flags) {
    flags |= O_CLOEXEC;
    Descriptor step;
    while (path.size() >= PATH_MAX) {
        const std::size_t end = path.rfind('/', PATH_MAX - 2);
        if (end == std::string_view::npos || end == 0) {
            errno = ENAMETOOLONG;
            return {};
        }
        step = openPiece(base, std::string(path.substr(0, end)).c_str(),
                         O_PATH | O_DIRECTORY | O_CLOEXEC | (flags & O_NOFOLLOW));
        if (!step.isOpen()) {
            return {};
        }
        base = step.number();
        path.remove_prefix(std::min(path.find_first_not_of('/', end), path.size()));
    }
    return openPiece(base, path.empty() ? "." : std::string(path).c_str(), flags);
}

Descriptor openPath(const FileURL& url, int flags) {
    const std::string& path = url.path();
    if (path.size() < PATH_MAX) {
        return Descriptor(open(path.c_str(), flags | O_CLOEXEC));
    }
    // O_NOFOLLOW in `flags` concerns the last component only, so the folder is opened without it.
    const FileURL folder = url.deletingLastPathComponent();
    const Descriptor root(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    const Descriptor parent =
        openPathAt(root.number(), std::string_view(folder.path()).substr(1), O_PATH | O_DIRECTORY);
    return parent.isOpen()
               ? Descriptor(openat(parent.number(), std::string(url.lastPathComponent()).c_str(), flags | O_CLOEXEC))
               : Descriptor();
}

std::optional<std::string> pathOfOpen(int descriptor) {
    std::array<char, PATH_MAX> buffer{};
    const std::string entry = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = readlink(entry.c_str(), buffer.data(), buffer.size());
    if (length <= 0 || length == static_cast<ssize_t>(buffer.size()) || buffer[0] != '/') {
        return {};
    }
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}
