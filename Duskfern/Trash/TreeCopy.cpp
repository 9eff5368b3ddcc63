#include "Trash/TreeCopy.h"

#include "Trash/FileAttributes.h"
#include "Trash/TrashFailure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

constexpr const char* linksName = "links";

int copyLink(int from, const char* fromName, int to, const char* toName, std::int64_t length) {
    // Some file systems report a length of 0 for links.
    std::string target(static_cast<std::size_t>(std::max<std::int64_t>(length, 4095)) + 1, '\0');
    const ssize_t size = readlinkat(from, fromName, target.data(), target.size());
    if (size < 0 || static_cast<std::size_t>(size) == target.size()) {
        return size < 0 ? errno : ENAMETOOLONG;
    }
    target.resize(static_cast<std::size_t>(size));
    return symlinkat(target.c_str(), to, toName) == 0 ? 0 : errno;
}

int link(int from, const char* fromName, int to, const char* toName) {
    return linkat(from, fromName, to, toName, 0) == 0 ? 0 : errno;
}

/// Where the home's file system supports no or not enough hard links, each name gets a separate copy.
bool hasNoLinks(int number) {
    return number == EPERM || number == EOPNOTSUPP || number == ENOSYS || number == EMLINK || number == ENOENT;
}

std::string linkTarget(int folder, const char* name) {
    std::string target(4096, '\0');
    const ssize_t size = readlinkat(folder, name, target.data(), target.size());
    target.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return target;
}

/// Leaves the access time unchanged if permitted.
Descriptor openToRead(int folder, const char* name) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    Descriptor file(openat(folder, name, flags | O_NOATIME));
    if (!file.isOpen() && errno == EPERM) {
        file.reset(openat(folder, name, flags));
    }
    return file;
}

}  // namespace

bool TreeCopy::advance(std::int64_t bytes) {
    m_done += bytes;
    if (m_progress) {
        m_progress(std::min(m_done / 2, m_manifest.bytes()), m_manifest.bytes());
    }
    return !m_stop.stop_requested();
}

TrashError TreeCopy::failure(int number) const {
    switch (number) {
        case ECANCELED:
            return TrashError::stopped;
        case ESTALE:
        case ENOENT:
        case ENOTDIR:
        case ELOOP:
            return TrashError::changedMeanwhile;
        case EACCES:
        case EPERM:
            return TrashError::closedInside;
        case ENAMETOOLONG:
        case EILSEQ:
        case EINVAL:
            return TrashError::nameTooLong;
        case ENOTSUP:
            return TrashError::attributes;
        case EFBIG:
            return TrashError::homeFull;
        default:
            break;
    }
    const TrashError error = trashErrorOf(number, m_place);
    return error == TrashError::full ? TrashError::homeFull : error;
}

/// Opens a folder of the original and of the copy, and calls `each` for its entries.
template <typename Each>
std::optional<TrashError> TreeCopy::withFolder(std::uint32_t folder, const Each& each) {
    const Descriptor from = m_manifest.tree().open(m_source.item, folder, O_RDONLY | O_DIRECTORY);
    const Descriptor root(openat(m_place, copyName, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const Descriptor to = m_manifest.tree().open(root.number(), folder, O_RDONLY | O_DIRECTORY);
    if (!from.isOpen() || !to.isOpen()) {
        return failure(errno);
    }
    const std::optional<FileStatus> status = fileStatus(from.number(), "");
    if (!status || status->identity != m_manifest.folderStatus(folder).identity) {
        return TrashError::changedMeanwhile;
    }
    for (std::size_t i = m_manifest.firstEntry(folder); i < m_manifest.endOfEntries(folder); ++i) {
        const TreeManifest::Entry& entry = m_manifest.entry(i);
        const char* const name = entry.name.c_str();
        if (const std::optional<TrashError> error = each(Pair{from.number(), name, to.number(), name}, entry.status)) {
            return error;
        }
    }
    return {};
}

/// Calls `each` for the item and everything below it, parents before children.
template <typename Each>
std::optional<TrashError> TreeCopy::forEachEntry(const Each& each) {
    const Pair item{m_source.parent, m_source.name.c_str(), m_place, copyName};
    std::optional<TrashError> error = each(item, m_manifest.root());
    for (std::uint32_t folder = 0; !error && folder < m_manifest.folderCount(); ++folder) {
        error = withFolder(folder, each);
    }
    return error;
}

std::optional<TrashError> TreeCopy::copy() {
    if (mkdirat(m_place, linksName, S_IRWXU) != 0) {
        return failure(errno);
    }
    std::optional<TrashError> error =
        forEachEntry([this](const Pair& pair, const FileStatus& status) { return copyEntry(pair, status); });
    return error ? error : copyFolderAttributes();
}

std::optional<TrashError> TreeCopy::copyEntry(const Pair& pair, const FileStatus& status) {
    if (m_stop.stop_requested()) {
        return TrashError::stopped;
    }
    if (status.isFolder()) {
        return mkdirat(pair.to, pair.toName, S_IRWXU) == 0 ? std::nullopt : std::optional(failure(errno));
    }
    return status.links > 1 ? copyLinked(pair, status) : copyOne(pair, status);
}

/// Keeps hard links between files in the item. The first copy of a linked file also gets a short name in `links`,
/// because its path may be too long to link from.
std::optional<TrashError> TreeCopy::copyLinked(const Pair& pair, const FileStatus& status) {
    const Descriptor links(openat(m_place, linksName, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!links.isOpen()) {
        return failure(errno);
    }
    const auto [known, isFirst] =
        m_links.try_emplace({status.identity.device, status.identity.inode}, std::to_string(m_links.size()));
    if (!isFirst) {
        const int number = link(links.number(), known->second.c_str(), pair.to, pair.toName);
        if (number == 0 || !hasNoLinks(number)) {
            return number == 0 ? std::nullopt : std::optional(failure(number));
        }
    }
    if (const std::optional<TrashError> error = copyOne(pair, status)) {
        return error;
    }
    const int number = isFirst ? link(pair.to, pair.toName, links.number(), known->second.c_str()) : 0;
    return number == 0 || hasNoLinks(number) ? std::nullopt : std::optional(failure(number));
}

std::optional<TrashError> TreeCopy::copyOne(const Pair& pair, const FileStatus& status) {
    struct stat source {};
    if (fstatat(pair.from, pair.fromName, &source, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0) {
        return failure(errno);
    }
    if (source.st_ino != status.identity.inode || (source.st_mode & S_IFMT) != status.identity.kind) {
        return TrashError::changedMeanwhile;
    }
    int number = 0;
    if (S_ISREG(source.st_mode)) {
        number = copyFile(pair, status);
    } else if (S_ISLNK(source.st_mode)) {
        number = copyLink(pair.from, pair.fromName, pair.to, pair.toName, source.st_size);
    } else if (mknodat(pair.to, pair.toName, source.st_mode & (S_IFMT | S_IRWXU), source.st_rdev) != 0) {
        return errno == EPERM ? TrashError::special : failure(errno);
    }
    if (number == 0) {
        number = copyAttributes(pair.from, pair.fromName, pair.to, pair.toName, source);
    }
    return number == 0 ? std::nullopt : std::optional(failure(number));
}

int TreeCopy::copyFile(const Pair& pair, const FileStatus& status) {
    const Descriptor from = openToRead(pair.from, pair.fromName);
    if (!from.isOpen()) {
        return errno;
    }
    const Descriptor to(
        openat(pair.to, pair.toName, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!to.isOpen()) {
        return errno;
    }
    CopyMethod method = CopyMethod::written;
    const int number = copyContents(
        from.number(), to.number(), status.length, [this](std::int64_t bytes) { return advance(bytes); }, method);
    // Shared data is not compared, so its share of the progress is added here.
    if (method == CopyMethod::reflinked && number == 0 && !advance(dataBytes(from.number(), status.length))) {
        return ECANCELED;
    }
    m_isReflinked = m_isReflinked && (method == CopyMethod::reflinked || status.length == 0);
    return number;
}

/// Deepest folders first: changes in a folder change its times.
std::optional<TrashError> TreeCopy::copyFolderAttributes() {
    for (std::uint32_t folder = m_manifest.folderCount(); folder > 0; --folder) {
        const Descriptor from = m_manifest.tree().open(m_source.item, folder - 1, O_PATH | O_DIRECTORY);
        const Descriptor root(openat(m_place, copyName, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        const Descriptor to = m_manifest.tree().open(root.number(), folder - 1, O_PATH | O_DIRECTORY);
        struct stat source {};
        if (!from.isOpen() || !to.isOpen() || fstat(from.number(), &source) != 0) {
            return failure(errno);
        }
        if (const int number = copyAttributes(from.number(), ".", to.number(), ".", source)) {
            return failure(number);
        }
    }
    return {};
}

std::optional<TrashError> TreeCopy::syncAndCompare() {
    const Descriptor place(openat(m_place, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (syncfs(place.number()) != 0) {
        return failure(errno);
    }
    return forEachEntry([this](const Pair& pair, const FileStatus& status) { return compareEntry(pair, status); });
}

std::optional<TrashError> TreeCopy::compareEntry(const Pair& pair, const FileStatus& status) {
    const std::optional<FileStatus> now = fileStatus(pair.from, pair.fromName);
    const std::optional<FileStatus> copy = fileStatus(pair.to, pair.toName);
    if (!now || !copy || !isUnchanged(status, *now)) {
        return TrashError::changedMeanwhile;
    }
    const unsigned kept = copy->owner == status.owner ? 07777U : 01777U;
    if (copy->identity.kind != status.identity.kind || copy->modifiedSeconds != status.modifiedSeconds ||
        (copy->identity.kind != S_IFLNK &&
         ((copy->mode ^ status.mode) & kept & ~static_cast<unsigned>(S_ISUID | S_ISGID)) != 0)) {
        return TrashError::attributes;
    }
    if (copy->identity.kind == S_IFLNK && linkTarget(pair.from, pair.fromName) != linkTarget(pair.to, pair.toName)) {
        return TrashError::changedMeanwhile;
    }
    if (!status.isRegularFile()) {
        return {};
    }
    if (copy->length != status.length) {
        return TrashError::changedMeanwhile;
    }
    const int number = m_isReflinked ? 0 : compareFile(pair, status);
    return number == 0 ? std::nullopt : std::optional(failure(number));
}

int TreeCopy::compareFile(const Pair& pair, const FileStatus& status) {
    const Descriptor from = openToRead(pair.from, pair.fromName);
    const Descriptor to = openToRead(pair.to, pair.toName);
    if (!from.isOpen() || !to.isOpen()) {
        return errno;
    }
    // Drops the page cache, so that the comparison reads from the disk.
    static_cast<void>(posix_fadvise(to.number(), 0, 0, POSIX_FADV_DONTNEED));
    return compareContents(from.number(), to.number(), status.length,
                           [this](std::int64_t bytes) { return advance(bytes); });
}
