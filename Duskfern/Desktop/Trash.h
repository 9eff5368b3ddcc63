#pragma once

#include "Foundation/FileStatus.h"
#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>

/// Why something could not be moved to the Trash.
enum class TrashError {
    gone,              ///< It does not exist any more.
    changed,           ///< Another item than the confirmed one has its path.
    changedMeanwhile,  ///< It was modified during copying.
    stopped,           ///< Ended because the program closes.
    noPermission,      ///< The user may not remove it from its folder.
    foreign,           ///< It belongs to another user, in a folder with the sticky bit.
    isProtected,       ///< It, or something in it that has to be copied, is immutable or append-only.
    closedInside,      ///< It has to be copied, and something in it cannot be read or removed.
    cannotBeEmptied,   ///< It contains folders of other users that the user could not delete from the Trash.
    readOnly,          ///< Its file system is read-only.
    full,              ///< No space is left for its .trashinfo file.
    quota,             ///< The user's disk quota is used up.
    noInodes,          ///< The file system has no free inode.
    homeFull,          ///< It has to be copied, and the home's file system has not enough space.
    noHome,            ///< There is no home folder.
    noTrash,           ///< The Trash folder cannot be used or created.
    nameTooLong,       ///< It has to be copied, and a name inside is too long for the home's file system.
    pathTooLong,       ///< Its path is too long to be opened or recorded.
    mounted,           ///< It is a mount point or contains one.
    ofTrash,           ///< It is a Trash, in one, or contains one.
    holdsHome,         ///< It is the home folder or contains it.
    attributes,        ///< It has to be copied, and the home's file system does not support its attributes.
    special,           ///< It has to be copied, and is or contains a device.
    tooManyOpen,       ///< The limit of open files is reached.
    diskError,         ///< An input or output error.
    remains,           ///< It is completely in the Trash, but part of the original could not be removed.
    other,
};

/// Moves items to the user's Trash, as the freedesktop.org Trash 1.0 describes it.
class Trash {
public:
    /// Called during a move that has to copy, with the bytes copied and the total, on the thread of the move.
    using Progress = std::function<void(std::int64_t copied, std::int64_t total)>;

    virtual ~Trash() = default;

    /// Moves one file or folder to the Trash; a link itself, not its target. Returns nothing, or why that failed. Only
    /// `item` is moved: if another item is at `url`, it stays and the result is `TrashError::changed`. A moved item can
    /// be restored: its .trashinfo file is complete. An item that is not moved stays where it was, complete. Blocks,
    /// forever if a disk does not answer. Thread-safe. `stop` ends a long move before anything of the original is
    /// removed.
    [[nodiscard]] virtual std::optional<TrashError> move(const FileURL& url, const FileIdentity& item,
                                                         const Progress& progress = {},
                                                         const std::stop_token& stop = {}) = 0;

    /// Why `move` would refuse the item at `url`, as far as can be told without trying; nothing if it should succeed.
    /// Checks the item and the folders above it, not its contents. Blocks as `move` does. Thread-safe.
    [[nodiscard]] virtual std::optional<TrashError> refusal(const FileURL& url) = 0;
};

/// The message shown when `url` could not be moved. Contains the file name, shortened if it is very long.
[[nodiscard]] QString trashErrorText(TrashError error, const FileURL& url);
