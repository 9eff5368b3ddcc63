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
    gone,              ///< Nothing is there any more.
    changed,           ///< Something else than what was confirmed is there now.
    changedMeanwhile,  ///< It was written to while it was copied.
    stopped,           ///< It was given up because the program closes.
    noPermission,      ///< The user may not take it out of its folder.
    foreign,           ///< It is another person's, in a folder where everybody keeps their own.
    isProtected,       ///< It, or something in it that would have to be copied, is immutable or append-only.
    closedInside,      ///< It has to be copied, and something inside cannot be read or taken out.
    cannotBeEmptied,   ///< It holds folders of others that the user could not delete from the Trash.
    readOnly,          ///< The file system it lies on cannot be written.
    full,              ///< No space is left to note where it came from.
    quota,             ///< The user's share of the disk is used up.
    noInodes,          ///< The disk has no room for one more file, of whatever size.
    homeFull,          ///< It has to be copied, and does not fit beside the home folder.
    noHome,            ///< There is no home folder.
    noTrash,           ///< The Trash folder is not there, or not usable, and cannot be made.
    nameTooLong,       ///< It has to be copied, and a name inside is too long for the home's file system.
    pathTooLong,       ///< The way to it is too long to be found or noted.
    mounted,           ///< It is a mount point or holds one.
    ofTrash,           ///< It is a Trash, lies in one or holds one.
    holdsHome,         ///< It is the home folder or holds it.
    attributes,        ///< It has to be copied, and the home's file system cannot keep its attributes.
    special,           ///< It has to be copied, and it or something inside is a device.
    tooManyOpen,       ///< No more files can be opened.
    diskError,         ///< The disk cannot be read or written.
    remains,           ///< It is in the Trash as a whole, but part of it could not be taken from where it was.
    other,
};

/// Moves things to the user's Trash as the freedesktop.org Trash 1.0 describes it.
class Trash {
public:
    /// How far a move is that has to copy: bytes copied, and in all. Called on the thread that moves.
    using Progress = std::function<void(std::int64_t copied, std::int64_t total)>;

    virtual ~Trash() = default;

    /// Moves one file or folder (a link itself, never its target) to the Trash and returns nothing, or why not. Only
    /// `item` itself is moved: whatever else has come to lie at `url` stays, as `TrashError::changed`. What is reported
    /// as moved can be restored: its note of origin is complete. Whatever is not moved stays where it was, whole.
    /// Blocks, without end where a disk does not answer; may be called on any thread, and on several at once. `stop`
    /// gives up a move that takes long, before anything of the original is gone.
    [[nodiscard]] virtual std::optional<TrashError> move(const FileURL& url, const FileIdentity& item,
                                                         const Progress& progress = {},
                                                         const std::stop_token& stop = {}) = 0;

    /// Why `move` would refuse what lies at `url`, as far as that shows without trying; nothing when it should work.
    /// Looks at the item and the folders it lies in, not at what is inside. Blocks as `move` does; any thread.
    [[nodiscard]] virtual std::optional<TrashError> refusal(const FileURL& url) = 0;
};

/// The sentence a person reads when `url` could not be moved; names the file, shortened where its name is very long.
[[nodiscard]] QString trashErrorText(TrashError error, const FileURL& url);
