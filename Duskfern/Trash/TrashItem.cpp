#include "Trash/TrashItem.h"

#include "Foundation/OpenPath.h"
#include "Trash/TrashFailure.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

bool TrashItem::isInPlace() const {
    const std::optional<FileStatus> now = fileStatus(parent.number(), name.c_str());
    return now && now->identity == status.identity;
}

std::optional<TrashError> openTrashItem(const FileURL& url, TrashItem& item) {
    item.name = url.lastPathComponent();
    if (item.name == "/") {
        return TrashError::holdsHome;
    }
    if (item.name.empty() || item.name == "." || item.name == "..") {
        return TrashError::other;
    }
    const FileURL folder = url.deletingLastPathComponent();
    item.parent = openPath(folder, O_PATH | O_DIRECTORY);
    if (!item.parent.isOpen()) {
        return trashErrorOf(errno, -1);
    }
    item.item.reset(openat(item.parent.number(), item.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!item.item.isOpen()) {
        return trashErrorOf(errno, -1);
    }
    const std::optional<FileStatus> status = fileStatus(item.item.number(), "");
    const std::optional<FileStatus> parent = fileStatus(item.parent.number(), "");
    if (!status || !parent) {
        return trashErrorOf(errno, -1);
    }
    item.status = *status;
    item.parentStatus = *parent;
    const FileURL real(pathOfOpen(item.parent.number()).value_or(folder.path()));
    item.path = real.appendingPathComponent(item.name).path();
    return {};
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
