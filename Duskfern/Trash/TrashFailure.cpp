#include "Trash/TrashFailure.h"

#include <sys/statvfs.h>

#include <cerrno>

namespace {

bool isOutOfInodes(int disk) {
    struct statvfs status {};
    return fstatvfs(disk, &status) == 0 && status.f_files > 0 && status.f_favail == 0 && status.f_bavail > 0;
}

}  // namespace

TrashError trashErrorOf(int number, int disk) {
    switch (number) {
        case ENOENT:
        case ENOTDIR:
            return TrashError::gone;
        case EACCES:
        case EPERM:
            return TrashError::noPermission;
        case EROFS:
            return TrashError::readOnly;
        case ENAMETOOLONG:
            return TrashError::pathTooLong;
        case EMFILE:
        case ENFILE:
            return TrashError::tooManyOpen;
        case EDQUOT:
            return TrashError::quota;
        case ENOSPC:
            return isOutOfInodes(disk) ? TrashError::noInodes : TrashError::full;
        case EIO:
        case ENXIO:
        case ENODEV:
        case ENOTCONN:
        case ESTALE:
        case EUCLEAN:
        case EREMOTEIO:
            return TrashError::diskError;
        default:
            return TrashError::other;
    }
}

TrashError trashFolderErrorOf(int number, int disk) {
    switch (number) {
        case ELOOP:
        case EEXIST:
        case EINVAL:
            return TrashError::noTrash;
        default:
            break;
    }
    const TrashError error = trashErrorOf(number, disk);
    switch (error) {
        case TrashError::gone:
        case TrashError::noPermission:
        case TrashError::readOnly:
        case TrashError::pathTooLong:
            return TrashError::noTrash;
        default:
            return error;
    }
}
