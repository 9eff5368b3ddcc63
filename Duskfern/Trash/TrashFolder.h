#pragma once

#include "Trash/TrashHome.h"
#include "Trash/TrashItem.h"
#include "Trash/TrashVolume.h"

/// An open Trash folder with its `files` and `info`, and how things come into it.
class TrashFolder {
public:
    /// Opens the home Trash, and makes what is missing of it where there is a home. Nothing, or why that failed.
    [[nodiscard]] std::optional<TrashError> openHome(const TrashHome& home);

    /// Opens the user's Trash at the top of a file system, and makes what is missing of it: in `.Trash` where that is a
    /// real folder with the sticky bit, else `.Trash-UID`. Nothing, or why that failed.
    [[nodiscard]] std::optional<TrashError> openOnVolume(const TrashVolume& volume);

    /// Where the home Trash is, or the nearest existing folder above; not open where there is no home.
    [[nodiscard]] static Descriptor nearestToHomeTrash(const TrashHome& home);

    /// What became of an attempt to take something in.
    struct Taken {
        std::string name;                 ///< What it is called in the Trash, where it lies now.
        std::optional<TrashError> error;  ///< Why it was not taken. Nothing is left of the attempt then.
        bool isElsewhere = false;         ///< No rename leads here from where it lies.
    };

    /// Notes that what is called `original` comes from `path` and renames `from`, of the open folder `fromFolder`, to a
    /// free name here: a note that is whole and on the disk first, then one rename that replaces nothing, then both
    /// folders brought to the disk.
    [[nodiscard]] Taken take(int fromFolder, const char* from, const FileIdentity& item, std::string_view original,
                             const std::string& path) const;

    /// Undoes `take`: back to where it was, if nothing is there, and the note gone. False where it had to stay.
    [[nodiscard]] bool giveBack(const std::string& name, int toFolder, const char* to, const FileIdentity& item) const;

    /// What `path` is called in notes of this Trash: relative to the top of its file system, but absolute at home.
    /// Nothing where that cannot be told.
    [[nodiscard]] std::optional<std::string> notedPath(const std::string& path) const;

    [[nodiscard]] int root() const { return m_root.number(); }
    [[nodiscard]] int files() const { return m_files.number(); }
    [[nodiscard]] int info() const { return m_info.number(); }

private:
    [[nodiscard]] std::optional<TrashError> openInside();
    [[nodiscard]] std::optional<TrashError> note(std::string_view original, const std::string& text,
                                                 std::string& name) const;
    [[nodiscard]] TrashError renameError(int number, int fromFolder) const;

    Descriptor m_root;
    Descriptor m_files;
    Descriptor m_info;
    std::string m_top;  ///< The top of the file system; empty in the home Trash.
};
