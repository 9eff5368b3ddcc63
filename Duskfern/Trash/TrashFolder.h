#pragma once

#include "Trash/TrashHome.h"
#include "Trash/TrashItem.h"
#include "Trash/TrashVolume.h"

/// An open Trash folder with its `files` and `info`. Moves items into it.
class TrashFolder {
public:
    /// Opens the home Trash and creates missing folders, unless the home is missing. Returns nothing, or why that
    /// failed.
    [[nodiscard]] std::optional<TrashError> openHome(const TrashHome& home);

    /// Opens the user's Trash at the top of a file system and creates missing folders: in `.Trash` if that is a real
    /// folder with the sticky bit, else `.Trash-UID`. Returns nothing, or why that failed.
    [[nodiscard]] std::optional<TrashError> openOnVolume(const TrashVolume& volume);

    /// Opens the home Trash, or its nearest existing parent folder; not open if there is no home.
    [[nodiscard]] static Descriptor nearestToHomeTrash(const TrashHome& home);

    /// The result of an attempt to move an item in.
    struct Taken {
        std::string name;                 ///< Its name in the Trash.
        std::optional<TrashError> error;  ///< Why it was not moved; then nothing is left of the attempt.
        bool isCrossDevice = false;       ///< The item is on another file system than the Trash.
    };

    /// Writes a .trashinfo file for an item called `original` that comes from `path`, then renames `from` of the open
    /// folder `fromFolder` to a free name here without replacing anything, then syncs both folders. The .trashinfo file
    /// is complete and synced before the rename.
    [[nodiscard]] Taken take(int fromFolder, const char* from, const FileIdentity& item, std::string_view original,
                             const std::string& path) const;

    /// Undoes `take`: moves the item back, if its name is free, and removes the .trashinfo file. False if the item had
    /// to stay.
    [[nodiscard]] bool putBack(const std::string& name, int toFolder, const char* to, const FileIdentity& item) const;

    /// `path` as .trashinfo files of this Trash contain it: relative to the top of its file system, but absolute in the
    /// home Trash. Nothing if it is not below that top.
    [[nodiscard]] std::optional<std::string> pathInInfo(const std::string& path) const;

    [[nodiscard]] int root() const { return m_root.number(); }
    [[nodiscard]] int files() const { return m_files.number(); }
    [[nodiscard]] int info() const { return m_info.number(); }

private:
    [[nodiscard]] std::optional<TrashError> openInside();
    [[nodiscard]] std::optional<TrashError> writeInfo(std::string_view original, const std::string& text,
                                                      std::string& name) const;
    [[nodiscard]] TrashError renameError(int number, int fromFolder) const;

    Descriptor m_root;
    Descriptor m_files;
    Descriptor m_info;
    std::string m_top;  ///< The top folder of the file system; empty for the home Trash.
};
