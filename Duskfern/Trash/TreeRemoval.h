#pragma once

#include "Trash/TreeManifest.h"

#include <string>

/// Removes the entry `name` of the open folder `directory` with everything below it. Only for unfinished copies of our
/// own. What cannot be removed stays.
void removeTree(int directory, const std::string& name);

/// Removes the original after its copy is complete.
class OriginalRemoval {
public:
    enum class Result {
        done,
        nothingGone,  ///< The first removal failed: the original is unchanged.
        partlyGone,
    };

    /// `parent` is the open folder that contains the item as `name`, `item` is the item itself, and `manifest` lists
    /// what was copied. Only what is listed and unmodified since then is removed.
    OriginalRemoval(int parent, std::string name, int item, const TreeManifest& manifest)
        : m_parent(parent), m_name(std::move(name)), m_item(item), m_manifest(manifest) {}

    /// Removes everything, with a second attempt at what could not be removed at first.
    [[nodiscard]] Result run();

    /// Why the first removal failed.
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
