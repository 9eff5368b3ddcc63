#pragma once

#include "Desktop/Trash.h"
#include "Foundation/Descriptor.h"

#include <cstdint>
#include <string>
#include <vector>

/// The folders of a tree by number. The root is 0, and a folder's number is higher than its parent's.
class FolderTree {
public:
    FolderTree() : m_folders(1) {}

    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(m_folders.size()); }
    void add(std::uint32_t parent, std::string name) { m_folders.push_back({parent, std::move(name)}); }

    [[nodiscard]] std::uint32_t parentOf(std::uint32_t folder) const { return m_folders[folder].parent; }
    [[nodiscard]] const std::string& nameOf(std::uint32_t folder) const { return m_folders[folder].name; }

    /// Opens a folder below the open folder `root`, at any depth. No link is followed.
    [[nodiscard]] Descriptor open(int root, std::uint32_t folder, int flags) const;

private:
    struct Folder {
        std::uint32_t parent = 0;
        std::string name;
    };
    std::vector<Folder> m_folders;
};

/// Receives what a walk finds. A returned error ends the walk.
class TreeVisitor {
public:
    virtual ~TreeVisitor() = default;

    /// The following entries are in `folder`, which is open as `directory`.
    [[nodiscard]] virtual std::optional<TrashError> enter(std::uint32_t folder, int directory) = 0;

    /// An entry other than "." and "..". Folders are entered later, in the order in which they are reported.
    [[nodiscard]] virtual std::optional<TrashError> entry(int directory, const char* name,
                                                          const FileStatus& status) = 0;

    /// A folder (with an empty `name`) or an entry of it that cannot be read; `number` is the error number.
    [[nodiscard]] virtual std::optional<TrashError> unreadable(std::uint32_t folder, const char* name, int number) = 0;
};

/// Walks everything below the open folder `root`, hidden entries included, with one open descriptor at a time. Does not
/// enter mounts or follow links. Adds the folders it finds to `tree`.
[[nodiscard]] std::optional<TrashError> walkTree(int root, FolderTree& tree, TreeVisitor& visitor,
                                                 const std::stop_token& stop);
