#include "Trash/FileContents.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace {

constexpr std::int64_t kernelChunk = std::int64_t{8} * 1024 * 1024;
constexpr std::int64_t bufferSize = std::int64_t{256} * 1024;

/// Calls `region(begin, end)` for each range of data until one returns an error number.
template <typename Region>
int forEachRegion(int file, std::int64_t length, const Region& region) {
    for (std::int64_t at = 0; at < length;) {
        std::int64_t begin = lseek(file, at, SEEK_DATA);
        std::int64_t end = length;
        if (begin < 0) {
            if (errno == ENXIO) {
                return 0;
            }
            begin = at;
        } else {
            const std::int64_t hole = lseek(file, begin, SEEK_HOLE);
            end = hole > begin ? std::min(hole, length) : length;
        }
        if (begin >= length) {
            return 0;
        }
        if (const int number = region(begin, end)) {
            return number;
        }
        at = end;
    }
    return 0;
}

/// Reads `size` bytes at `at`, fewer only at the end of the file; negative with errno set.
ssize_t readAll(int file, char* bytes, std::size_t size, std::int64_t at) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = pread(file, bytes + done, size - done, at + static_cast<std::int64_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return count;
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

int writeAll(int file, const char* bytes, std::size_t size, std::int64_t at) {
    for (std::size_t done = 0; done < size;) {
        const ssize_t count = pwrite(file, bytes + done, size - done, at + static_cast<std::int64_t>(done));
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(0, count));
    }
    return 0;
}

int copyWithBuffer(int from, int to, std::int64_t begin, std::int64_t end, const BytesDone& done) {
    std::vector<char> buffer(static_cast<std::size_t>(std::min(bufferSize, end - begin)));
    for (std::int64_t at = begin; at < end;) {
        const std::size_t size = std::min<std::size_t>(buffer.size(), static_cast<std::size_t>(end - at));
        const ssize_t count = readAll(from, buffer.data(), size, at);
        if (count <= 0) {
            return count < 0 ? errno : ESTALE;
        }
        if (const int number = writeAll(to, buffer.data(), static_cast<std::size_t>(count), at)) {
            return number;
        }
        at += count;
        if (!done(count)) {
            return ECANCELED;
        }
    }
    return 0;
}

int copyRegion(int from, int to, std::int64_t begin, std::int64_t end, const BytesDone& done) {
    while (begin < end) {
        loff_t source = begin;
        loff_t target = begin;
        const ssize_t count = copy_file_range(from, &source, to, &target,
                                              static_cast<std::size_t>(std::min(kernelChunk, end - begin)), 0);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)) {
            return errno;
        }
        if (count <= 0) {
            // The kernel cannot copy between some file systems, and on some it returns 0.
            return copyWithBuffer(from, to, begin, end, done);
        }
        begin += count;
        if (!done(count)) {
            return ECANCELED;
        }
    }
    return 0;
}

}  // namespace

int copyContents(int from, int to, std::int64_t length, const BytesDone& done, CopyMethod& method) {
    if (length > 0 && ioctl(to, FICLONE, from) == 0) {
        method = CopyMethod::reflinked;
        return done(dataBytes(from, length)) ? 0 : ECANCELED;
    }
    method = CopyMethod::written;
    const int number = forEachRegion(
        from, length, [&](std::int64_t begin, std::int64_t end) { return copyRegion(from, to, begin, end, done); });
    return number == 0 && ftruncate(to, length) != 0 ? errno : number;
}

int compareContents(int from, int to, std::int64_t length, const BytesDone& done) {
    std::vector<char> left(static_cast<std::size_t>(std::min(bufferSize, length)));
    std::vector<char> right(left.size());
    return forEachRegion(from, length, [&](std::int64_t begin, std::int64_t end) {
        for (std::int64_t at = begin; at < end;) {
            const std::size_t size = std::min<std::size_t>(left.size(), static_cast<std::size_t>(end - at));
            const ssize_t one = readAll(from, left.data(), size, at);
            const ssize_t other = readAll(to, right.data(), size, at);
            if (one < 0 || other < 0) {
                return errno;
            }
            if (one == 0 || one != other ||
                std::memcmp(left.data(), right.data(), static_cast<std::size_t>(one)) != 0) {
                return ESTALE;
            }
            at += one;
            if (!done(one)) {
                return ECANCELED;
            }
        }
        return 0;
    });
}

std::int64_t dataBytes(int file, std::int64_t length) {
    std::int64_t bytes = 0;
    static_cast<void>(forEachRegion(file, length, [&](std::int64_t begin, std::int64_t end) {
        bytes += end - begin;
        return 0;
    }));
    return bytes;
}
