#pragma once

#include "Trash/TreeWalk.h"

/// A list of everything in a file or folder with its status at the time of reading. It determines what is copied and
/// what may be removed afterwards.
class TreeManifest {
public:
    struct Entry {
        std::string name;
        FileStatus status;
    };

    /// Reads the entry `name` of the open folder `parent`, itself open as `item`. Returns an error if part of it cannot
    /// be read, or not be removed later by this user.
    [[nodiscard]] std::optional<TrashError> read(int parent, const std::string& name, int item,
                                                 const std::stop_token& stop);

    [[nodiscard]] const FileStatus& root() const { return m_root; }

    /// The folders in the item, itself included if it is one.
    [[nodiscard]] std::uint32_t folderCount() const { return m_root.isFolder() ? m_tree.size() : 0; }
    [[nodiscard]] const FolderTree& tree() const { return m_tree; }

    /// The range of entries of a folder.
    [[nodiscard]] std::size_t firstEntry(std::uint32_t folder) const { return m_first[folder]; }
    [[nodiscard]] std::size_t endOfEntries(std::uint32_t folder) const {
        return folder + 1 < m_first.size() ? m_first[folder + 1] : m_entries.size();
    }
    [[nodiscard]] const Entry& entry(std::size_t index) const { return m_entries[index]; }
    [[nodiscard]] std::size_t entryCount() const { return m_entries.size(); }

    /// The status of a folder itself.
    [[nodiscard]] const FileStatus& folderStatus(std::uint32_t folder) const {
        return folder == 0 ? m_root : m_entries[m_entryOf[folder]].status;
    }

    /// Bytes of data without holes; a file with several hard links counts once.
    [[nodiscard]] std::int64_t bytes() const { return m_bytes; }

private:
    class Reader;

    FileStatus m_root;
    FolderTree m_tree;
    std::vector<Entry> m_entries;        ///< In the order of folders.
    std::vector<std::size_t> m_first;    ///< Index of the first entry, by folder.
    std::vector<std::size_t> m_entryOf;  ///< Index of the folder's own entry, by folder; unused for the root.
    std::int64_t m_bytes = 0;
};

/// Whether an item is the same and was not modified. Hard links may have been added or removed.
[[nodiscard]] bool isUnchanged(const FileStatus& before, const FileStatus& now);
