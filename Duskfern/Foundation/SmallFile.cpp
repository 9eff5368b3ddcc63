#include "Foundation/SmallFile.h"

#include "Foundation/Descriptor.h"
#include "Foundation/FileStatus.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

std::optional<std::string> readSmallFile(int directory, const char* path, std::size_t limit, FollowLinks links) {
    // Without O_NONBLOCK, opening a named pipe would wait for a writer.
    const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (links == FollowLinks::no ? O_NOFOLLOW : 0);
    const Descriptor file(openat(directory, path, flags));
    if (!file.isOpen()) {
        return std::nullopt;
    }
    const std::optional<FileStatus> status = fileStatus(file.number(), "");
    if (!status || !status->isRegularFile()) {
        errno = EINVAL;
        return std::nullopt;
    }
    // O_NOATIME is allowed for the owner only; the call fails for others, who read without it.
    (void)fcntl(file.number(), F_SETFL, O_RDONLY | O_NONBLOCK | O_NOATIME);
    std::string text(std::min(limit, static_cast<std::size_t>(std::max<std::int64_t>(0, status->length))), '\0');
    std::size_t size = 0;
    while (size < text.size()) {
        const ssize_t count = read(file.number(), text.data() + size, text.size() - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
    }
    text.resize(size);
    return text;
}
