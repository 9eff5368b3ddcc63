#include "Trash/TrashItem.h"

#include "Foundation/OpenPath.h"
#include "Trash/TrashFailure.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

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
