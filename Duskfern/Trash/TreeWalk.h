#pragma once

#include "Desktop/Trash.h"
#include "Foundation/Descriptor.h"

#include <cstdint>
#include <string>
#include <vector>

/// The folders of a tree, each known by a number: 0 is the root, and a folder's number is higher than its parent's.
class FolderTree {
public:
    FolderTree() : m_folders(1) {}

    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(m_folders.size()); }
    void add(std::uint32_t parent, std::string name) { m_folders.push_back({parent, std::move(name)}); }

    [[nodiscard]] std::uint32_t parentOf(std::uint32_t folder) const { return m_folders[folder].parent; }
    [[nodiscard]] const std::string& nameOf(std::uint32_t folder) const { return m_folders[folder].name; }

    /// Opens a folder below the open folder `root`, however deep. No link is followed.
    [[nodiscard]] Descriptor open(int root, std::uint32_t folder, int flags) const;

private:
    struct Folder {
        std::uint32_t parent = 0;
        std::string name;
    };
    std::vector<Folder> m_folders;
};

/// What a walk reports to. Any error that is returned ends the walk.
class TreeVisitor {
public:
    virtual ~TreeVisitor() = default;

    /// The entries from here on lie in `folder`, which is open as `directory`.
    [[nodiscard]] virtual std::optional<TrashError> enter(std::uint32_t folder, int directory) = 0;

    /// Anything but "." and "..". Folders are entered later, in the order in which they are reported.
    [[nodiscard]] virtual std::optional<TrashError> entry(int directory, const char* name,
                                                          const FileStatus& status) = 0;

    /// A folder (an empty `name`) or an entry of it that the kernel does not let us see; `number` is its error.
    [[nodiscard]] virtual std::optional<TrashError> closed(std::uint32_t folder, const char* name, int number) = 0;
};

/// Walks everything below the open folder `root`, hidden entries included, one folder at a time with one descriptor,
/// into no mount and no link. `tree` is filled on the way.
[[nodiscard]] std::optional<TrashError> walkTree(int root, FolderTree& tree, TreeVisitor& visitor,
                                                 const std::stop_token& stop);
