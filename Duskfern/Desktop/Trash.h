#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <optional>

/// Why something could not be moved to the Trash.
enum class TrashError {
    gone,          ///< Nothing is there any more.
    noPermission,  ///< The user may not take it out of its folder.
    readOnly,      ///< The file system it lies on cannot be written.
    full,          ///< No space is left to note where it came from.
    noTrash,       ///< The file system it lies on has no Trash, or does not let us make one.
    nameTooLong,   ///< The Trash cannot hold a name of this length.
    other,
};

/// Moves things to the user's Trash as the freedesktop.org Trash 1.0 describes it.
class Trash {
public:
    virtual ~Trash() = default;

    /// Moves one file or folder (a link itself, never its target) to the Trash and returns nothing, or why not. What is
    /// reported as moved can be restored: its note of origin is complete. Whatever is not moved stays where it was.
    /// Blocks; may be called on any thread.
    [[nodiscard]] virtual std::optional<TrashError> move(const FileURL& url) = 0;
};

/// The sentence a person reads when `url` could not be moved; names the file.
[[nodiscard]] QString trashErrorText(TrashError error, const FileURL& url);
