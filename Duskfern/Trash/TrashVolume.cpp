#include "Trash/TrashVolume.h"

#include "Foundation/OpenPath.h"
#include "Trash/TrashItem.h"

#include <fcntl.h>

#include <utility>

TrashVolume volumeOf(int folder) {
    Descriptor here(openat(folder, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    while (here.isOpen()) {
        const std::optional<FileStatus> status = fileStatus(here.number(), "");
        Descriptor above(openat(here.number(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        const std::optional<FileStatus> outer = above.isOpen() ? fileStatus(above.number(), "") : std::nullopt;
        if (!status || !outer) {
            break;
        }
        // Old kernels do not mark mount points; there another device must do.
        if (status->isMountPoint || outer->identity == status->identity ||
            outer->identity.device != status->identity.device) {
            std::optional<std::string> path = pathOfOpen(here.number());
            return path ? TrashVolume{std::move(here), std::move(*path)} : TrashVolume();
        }
        here = std::move(above);
    }
    return {};
}
