#include "Trash/SafeRename.h"

#include "Foundation/Descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace {

bool isItem(int folder, const char* name, const FileIdentity& item) {
    const std::optional<FileStatus> status = fileStatus(folder, name);
    return status && status->identity == item;
}

/// Links the new name first and then unlinks the old one: if killed in between, the item has both names.
int linkThenUnlink(int fromFolder, const char* from, int toFolder, const char* to, const FileIdentity& item) {
    if (linkat(fromFolder, from, toFolder, to, 0) != 0) {
        return errno;
    }
    if (!isItem(fromFolder, from, item) || !isItem(toFolder, to, item)) {
        unlinkat(toFolder, to, 0);
        return ENOENT;
    }
    if (unlinkat(fromFolder, from, 0) != 0) {
        const int number = errno;
        unlinkat(toFolder, to, 0);
        return number;
    }
    return 0;
}

/// Reserves the name with an empty file of our own and renames over that.
int overPlaceholder(int fromFolder, const char* from, int toFolder, const char* to) {
    const Descriptor placeholder(openat(toFolder, to, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
    if (!placeholder.isOpen()) {
        return errno;
    }
    if (renameat(fromFolder, from, toFolder, to) == 0) {
        return 0;
    }
    const int number = errno;
    unlinkat(toFolder, to, 0);
    return number;
}

}  // namespace

int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to, const FileIdentity& item) {
    if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) {
        return errno;
    }
    if (isTaken(toFolder, to)) {
        return EEXIST;
    }
    if (item.isFolder()) {
        const int number = renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
        return number == ENOTEMPTY || number == ENOTDIR ? EEXIST : number;
    }
    const int number = linkThenUnlink(fromFolder, from, toFolder, to, item);
    const bool hasNoLinks = number == EPERM || number == EOPNOTSUPP || number == ENOSYS || number == EMLINK;
    return hasNoLinks ? overPlaceholder(fromFolder, from, toFolder, to) : number;
}

bool isTaken(int folder, const char* name) {
    return fileStatus(folder, name).has_value() || errno != ENOENT;
}

int syncFolder(int folder) {
    const Descriptor open(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!open.isOpen()) {
        return errno == EACCES ? 0 : errno;
    }
    if (fsync(open.number()) == 0 || errno == EINVAL || errno == EBADF || errno == ENOSYS || errno == EOPNOTSUPP) {
        return 0;
    }
    return errno;
}
