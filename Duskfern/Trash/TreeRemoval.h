#pragma once

#include "Trash/TreeManifest.h"

#include <string>

/// Removes something of our own, an unfinished copy: the entry `name` of the open folder `directory` with all below.
/// What cannot be removed stays.
void removeTree(int directory, const std::string& name);

/// Takes the original away once its copy is safe.
class OriginalRemoval {
public:
    enum class Result {
        done,
        nothingGone,  ///< The first thing to be removed could not be: the original is as it was.
        partlyGone,
    };

    /// `parent` is the open folder that the item lies in as `name`, `item` the item itself; `manifest` says what was
    /// copied. Nothing else is removed, nor what was written to since.
    OriginalRemoval(int parent, std::string name, int item, const TreeManifest& manifest)
        : m_parent(parent), m_name(std::move(name)), m_item(item), m_manifest(manifest) {}

    /// Removes all of it, and tries a second time what could not be removed at first.
    [[nodiscard]] Result run();

    /// Why the first thing could not be removed.
    [[nodiscard]] TrashError error() const { return m_error; }

private:
    [[nodiscard]] bool pass();
    [[nodiscard]] bool removeFrom(std::uint32_t folder);
    [[nodiscard]] bool removeEntry(int directory, const std::string& name, const FileStatus& expected);

    int m_parent;
    std::string m_name;
    int m_item;
    const TreeManifest& m_manifest;
    bool m_isAnythingGone = false;
    TrashError m_error = TrashError::other;
};
