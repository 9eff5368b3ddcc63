#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the name of a note of origin has beyond the name of the item it belongs to.
inline constexpr std::string_view trashNoteSuffix = ".trashinfo";

/// `path` without links and dots; as it is where it leads nowhere.
[[nodiscard]] std::string realPathOf(const std::string& path);

/// Something that lies in a Trash folder, with the note that says where it came from.
class TrashedItem {
public:
    /// The item at the absolute path `file`; nothing when that is not inside a Trash folder's `files`.
    [[nodiscard]] static std::optional<TrashedItem> at(const std::string& file);

    /// True when the note can bring the item back to the absolute path `origin`.
    [[nodiscard]] bool hasNoteOf(const std::string& origin) const;

    /// Writes the note anew, dated now. False when it could not be written as a whole; it is empty then.
    [[nodiscard]] bool writeNote(const std::string& origin) const;

    /// Moves the item to `origin` and drops its note. False, with nothing changed, when `origin` is taken or cannot be
    /// written: nothing is ever replaced.
    [[nodiscard]] bool putBack(const std::string& origin) const;

private:
    [[nodiscard]] std::string absolute(const std::string& notedPath) const;

    std::string m_file;
    std::string m_note;
    std::string m_top;  ///< The folder that paths in the note may be relative to; empty in the home Trash.
};

/// Keeps what lies in Trash folders without a note from being overwritten: `g_file_trash` of GLib 2.74 takes the first
/// name without a note and renames onto whatever file has that name. While this lives, such names are taken by an empty
/// note.
class TrashOrphanGuard {
public:
    /// Guards the names that an item called `name` could get in the Trash folders given.
    TrashOrphanGuard(const std::vector<std::string>& trashFolders, std::string_view name);
    ~TrashOrphanGuard();
    TrashOrphanGuard(const TrashOrphanGuard&) = delete;
    TrashOrphanGuard& operator=(const TrashOrphanGuard&) = delete;

    /// False when a name had to be taken and could not be.
    [[nodiscard]] bool holds() const { return m_holds; }

private:
    std::vector<std::string> m_notes;
    bool m_holds = true;
};
