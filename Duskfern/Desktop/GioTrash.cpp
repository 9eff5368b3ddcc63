#include "Desktop/GioTrash.h"

#include "Desktop/GioSupport.h"
#include "Desktop/TrashedItem.h"
#include "Foundation/OpenPath.h"

#include <fcntl.h>
#include <gio/gunixmounts.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

namespace {

TrashError errorOf(int number) {
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
            return TrashError::nameTooLong;
        default:
            return TrashError::other;
    }
}

bool isItemAt(const std::string& path, int item) {
    struct stat there = {};
    struct stat wanted = {};
    return lstat(path.c_str(), &there) == 0 && fstat(item, &wanted) == 0 && there.st_dev == wanted.st_dev &&
           there.st_ino == wanted.st_ino;
}

/// The real path of an open item. Unlike a search by inode number this tells hard links apart and holds on overlay
/// file systems, whose inode numbers change.
std::optional<std::string> whereIs(int item) {
    std::array<char, PATH_MAX> buffer = {};
    const std::string entry = "/proc/self/fd/" + std::to_string(item);
    const ssize_t length = readlink(entry.c_str(), buffer.data(), buffer.size());
    if (length <= 0) {
        return {};
    }
    std::string path(buffer.data(), static_cast<size_t>(length));
    return isItemAt(path, item) ? std::optional(std::move(path)) : std::nullopt;
}

/// Whether something is mounted at or below the folder `path`. It would move to the Trash with the folder, and go when
/// the Trash is emptied.
bool holdsMount(const std::string& path) {
    const std::string folder = realPathOf(path);
    const auto release = [](GList* mounts) {
        g_list_free_full(mounts, [](gpointer mount) { g_unix_mount_free(static_cast<GUnixMountEntry*>(mount)); });
    };
    const std::unique_ptr<GList, decltype(release)> mounts(g_unix_mounts_get(nullptr), release);
    for (const GList* entry = mounts.get(); entry; entry = entry->next) {
        const std::string_view place = g_unix_mount_get_mount_path(static_cast<GUnixMountEntry*>(entry->data));
        if (place.starts_with(folder) && (place.size() == folder.size() || place[folder.size()] == '/')) {
            return true;
        }
    }
    return false;
}

/// Why an item cannot be moved, as far as that shows beforehand.
std::optional<TrashError> reasonAgainst(const FileURL& url, int item) {
    const std::string_view name = url.lastPathComponent();
    if (name == "/" || name == "." || name == "..") {
        return TrashError::other;
    }
    if (name.size() > NAME_MAX - trashNoteSuffix.size()) {
        return TrashError::nameTooLong;
    }
    const std::string folder = url.deletingLastPathComponent().path();
    struct statx status = {};
    struct statx parent = {};
    if (statx(item, "", AT_EMPTY_PATH | AT_NO_AUTOMOUNT, STATX_BASIC_STATS, &status) != 0) {
        return errorOf(errno);
    }
    const bool isFolder = S_ISDIR(status.stx_mode);
    if ((status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0 || (isFolder && holdsMount(url.path()))) {
        return TrashError::other;
    }
    // A folder that moves to another one has its ".." rewritten.
    if (statx(AT_FDCWD, folder.c_str(), 0, STATX_BASIC_STATS, &parent) != 0 ||
        faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0 ||
        (isFolder && faccessat(AT_FDCWD, url.path().c_str(), W_OK, AT_EACCESS) != 0)) {
        return errorOf(errno);
    }
    const uid_t user = geteuid();
    const bool kept = (parent.stx_mode & S_ISVTX) != 0 && user != 0 && user != parent.stx_uid && user != status.stx_uid;
    const bool fixed = (status.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0 ||
                       (parent.stx_attributes & STATX_ATTR_APPEND) != 0;
    return kept || fixed ? std::optional(TrashError::noPermission) : std::nullopt;
}

/// The folders that `g_file_trash` may choose for an item, whether they exist or not.
std::vector<std::string> trashFolders(const FileURL& url) {
    FileURL top(realPathOf(url.deletingLastPathComponent().path()));
    struct stat inside = {};
    struct stat outside = {};
    static_cast<void>(lstat(top.path().c_str(), &inside));
    while (top.path() != "/" && lstat(top.deletingLastPathComponent().path().c_str(), &outside) == 0 &&
           outside.st_dev == inside.st_dev) {
        top = top.deletingLastPathComponent();
    }
    const std::string user = std::to_string(geteuid());
    return {std::string(g_get_user_data_dir()) + "/Trash",
            top.appendingPathComponent(".Trash").appendingPathComponent(user).path(),
            top.appendingPathComponent(".Trash-" + user).path()};
}

TrashError errorOf(const GError& error, const FileURL& url, int item) {
    if (error.domain != G_IO_ERROR) {
        return TrashError::other;
    }
    switch (error.code) {
        case G_IO_ERROR_NOT_FOUND:
            return TrashError::gone;
        case G_IO_ERROR_PERMISSION_DENIED:
        case G_IO_ERROR_READ_ONLY:
            // Where the item could be taken away it is the Trash that cannot be written.
            return reasonAgainst(url, item).value_or(TrashError::noTrash);
        case G_IO_ERROR_NO_SPACE:
            return TrashError::full;
        case G_IO_ERROR_NOT_SUPPORTED:
            return TrashError::noTrash;
        case G_IO_ERROR_FILENAME_TOO_LONG:
            return TrashError::nameTooLong;
        default:
            return TrashError::other;
    }
}

}  // namespace

std::optional<TrashError> GioTrash::refusal(const FileURL& url) {
    const Descriptor item = openPath(url, O_PATH | O_NOFOLLOW);
    return item.isOpen() ? reasonAgainst(url, item.number()) : errorOf(errno);
}

std::optional<TrashError> GioTrash::move(const FileURL& url, const FileIdentity& wanted, const Progress& /*progress*/,
                                         const std::stop_token& /*stop*/) {
    const std::string& origin = url.path();
    const Descriptor item = openPath(url, O_PATH | O_NOFOLLOW);
    if (!item.isOpen()) {
        return errorOf(errno);
    }
    const std::optional<FileStatus> status = fileStatus(item.number(), "");
    if (!status || status->identity != wanted) {
        return TrashError::changed;
    }
    if (const std::optional<TrashError> reason = reasonAgainst(url, item.number())) {
        return reason;
    }
    const GObjectPtr<GFile> file(g_file_new_for_path(origin.c_str()));
    // GIO resolves ".." by the letter, which behind a link leads somewhere else.
    const char* const meant = g_file_peek_path(file.get());
    if (!meant || !isItemAt(meant, item.number())) {
        return TrashError::other;
    }
    const TrashOrphanGuard guard(trashFolders(url), url.lastPathComponent());
    if (!guard.holds()) {
        return TrashError::noTrash;
    }

    GPtr<GError> error;
    g_file_trash(file.get(), nullptr, Out(error));

    if (isItemAt(origin, item.number())) {
        return error ? errorOf(*error, url, item.number()) : TrashError::other;
    }
    const std::optional<std::string> place = whereIs(item.number());
    const std::optional<TrashedItem> trashed = place ? TrashedItem::at(*place) : std::nullopt;
    if (!trashed) {
        // Somebody else took the item away in the meantime, or replaced it.
        return error ? TrashError::gone : TrashError::other;
    }
    if (trashed->hasNoteOf(origin) || (trashed->writeNote(origin) && trashed->hasNoteOf(origin))) {
        return {};
    }
    // What has no room for its note goes back. If its place is taken by now it stays in the Trash, as a whole.
    static_cast<void>(trashed->putBack(origin));
    return TrashError::full;
}
