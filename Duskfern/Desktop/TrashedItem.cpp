#include "Desktop/TrashedItem.h"

#include "Desktop/GioSupport.h"
#include "Foundation/FileURL.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace {

constexpr std::string_view header = "[Trash Info]";

struct Note {
    std::string path;  ///< Decoded; absolute, or relative to the top folder of the file system.
    std::string date;
};

std::optional<Note> readNote(const std::string& file) {
    GPtr<char> bytes;
    gsize size = 0;
    if (!g_file_get_contents(file.c_str(), Out(bytes), &size, nullptr)) {
        return {};
    }
    std::string_view rest(bytes.get(), size);
    bool first = true;
    std::optional<std::string> path;
    std::optional<std::string> date;
    while (!rest.empty()) {
        const size_t end = rest.find('\n');
        const std::string line(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        if (std::exchange(first, false)) {
            if (line != header) {
                return {};
            }
        } else if (!path && line.starts_with("Path=")) {
            const GPtr<char> decoded(g_uri_unescape_string(line.c_str() + 5, nullptr));
            path = decoded ? decoded.get() : "";
        } else if (!date && line.starts_with("DeletionDate=")) {
            date = line.substr(13);
        }
    }
    if (!path || path->empty() || !date) {
        return {};
    }
    return Note{*path, *date};
}

bool isDate(const std::string& text) {
    const GPtr<GTimeZone> zone(g_time_zone_new_utc());
    return GPtr<GDateTime>(g_date_time_new_from_iso8601(text.c_str(), zone.get())) != nullptr;
}

bool sameFolder(const std::string& a, const std::string& b) {
    struct stat left = {};
    struct stat right = {};
    return stat(a.c_str(), &left) == 0 && stat(b.c_str(), &right) == 0 && left.st_dev == right.st_dev &&
           left.st_ino == right.st_ino;
}

bool exists(const std::string& path) {
    struct stat ignored = {};
    return lstat(path.c_str(), &ignored) == 0;
}

/// The name GLib 2.74 gives to the `count`-th item called `name`: a, a.2, a.3; and a.2.tar.gz.
std::string nameInTrash(std::string_view name, int count) {
    std::string result(name);
    if (count > 1) {
        const size_t dot = std::min(name.find('.'), name.size());
        result.insert(dot, "." + std::to_string(count));
    }
    return result;
}

}  // namespace

std::string realPathOf(const std::string& path) {
    return realPath(FileURL(path)).value_or(path);
}

std::optional<TrashedItem> TrashedItem::at(const std::string& file) {
    const FileURL url(file);
    const FileURL files = url.deletingLastPathComponent();
    const FileURL trash = files.deletingLastPathComponent();
    const FileURL info = trash.appendingPathComponent("info");
    if (files.lastPathComponent() != "files" || !exists(info.path())) {
        return {};
    }
    TrashedItem item;
    item.m_file = file;
    item.m_note = info.appendingPathComponent(std::string(url.lastPathComponent()).append(trashNoteSuffix)).path();
    const FileURL outer = trash.deletingLastPathComponent();
    if (outer.lastPathComponent() == ".Trash") {
        item.m_top = outer.deletingLastPathComponent().path();
    } else if (trash.lastPathComponent().starts_with(".Trash-")) {
        item.m_top = outer.path();
    }
    return item;
}

std::string TrashedItem::absolute(const std::string& notedPath) const {
    if (notedPath.starts_with('/') || m_top.empty()) {
        return notedPath;
    }
    return FileURL(m_top).appendingPathComponent(notedPath).path();
}

bool TrashedItem::hasNoteOf(const std::string& origin) const {
    const std::optional<Note> note = readNote(m_note);
    if (!note || !isDate(note->date)) {
        return false;
    }
    const std::string noted = absolute(note->path);
    if (noted == origin) {
        return true;
    }
    // GIO writes the real path where the way to the item leads over a link.
    const FileURL one(noted);
    const FileURL other(origin);
    return noted.starts_with('/') && one.lastPathComponent() == other.lastPathComponent() &&
           sameFolder(one.deletingLastPathComponent().path(), other.deletingLastPathComponent().path());
}

bool TrashedItem::writeNote(const std::string& origin) const {
    std::string path = origin;
    if (!m_top.empty()) {
        const FileURL url(origin);
        const FileURL folder(realPathOf(url.deletingLastPathComponent().path()));
        const std::string real = folder.appendingPathComponent(url.lastPathComponent()).path();
        const std::string prefix = m_top == "/" ? m_top : m_top + "/";
        path = real.starts_with(prefix) ? real.substr(prefix.size()) : real;
    }
    const GPtr<char> escaped(g_uri_escape_string(path.c_str(), "/", FALSE));
    const GPtr<GDateTime> now(g_date_time_new_now_local());
    const GPtr<char> date(g_date_time_format(now.get(), "%Y-%m-%dT%H:%M:%S"));
    const std::string text = std::string(header) + "\nPath=" + escaped.get() + "\nDeletionDate=" + date.get() + "\n";
    // Without its flags it writes in place: a temporary file beside the note has too long a name for some items.
    if (g_file_set_contents_full(m_note.c_str(), text.data(), static_cast<gssize>(text.size()),
                                 G_FILE_SET_CONTENTS_NONE, 0600, nullptr)) {
        return true;
    }
    // Half a path would bring the item back to a wrong place; an empty note is only ignored.
    static_cast<void>(!truncate(m_note.c_str(), 0));
    return false;
}

bool TrashedItem::putBack(const std::string& origin) const {
    const char* from = m_file.c_str();
    const char* to = origin.c_str();
    bool back = renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0;
    if (!back && errno == EINVAL) {
        // The file system does not know the flag. A folder replaces at most an empty folder; anything else is linked,
        // which fails where something is.
        struct stat status = {};
        if (lstat(from, &status) == 0) {
            back = S_ISDIR(status.st_mode) ? rename(from, to) == 0 : link(from, to) == 0;
            if (back && !S_ISDIR(status.st_mode)) {
                // A name that stays behind is a spare one. Taking the link back could take the last.
                unlink(from);
            }
        }
    }
    if (back) {
        unlink(m_note.c_str());
    }
    return back;
}

TrashOrphanGuard::TrashOrphanGuard(const std::vector<std::string>& trashFolders, std::string_view name) {
    for (const std::string& trash : trashFolders) {
        if (!exists(trash + "/files")) {
            continue;
        }
        for (int count = 1;; ++count) {
            const std::string candidate = nameInTrash(name, count);
            const std::string note = (trash + "/info/" + candidate).append(trashNoteSuffix);
            if (exists(note)) {
                continue;
            }
            if (!exists(trash + "/files/" + candidate)) {
                break;
            }
            const int file = open(note.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
            if (file < 0 && errno != EEXIST) {
                m_holds = false;
                break;
            }
            if (file >= 0) {
                close(file);
                m_notes.push_back(note);
            }
        }
    }
}

TrashOrphanGuard::~TrashOrphanGuard() {
    for (const std::string& note : m_notes) {
        unlink(note.c_str());
    }
}
