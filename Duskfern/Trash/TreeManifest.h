#pragma once

#include "Trash/TreeWalk.h"

/// All that a file or folder consists of, as it was when it was read: what has to be copied, and what may be removed
/// afterwards.
class TreeManifest {
public:
    struct Entry {
        std::string name;
        FileStatus status;
    };

    /// Reads the item that lies in the open folder `parent` as `name` and is itself open as `item`. Returns an error
    /// where part of it could not be read or later be removed by this user.
    [[nodiscard]] std::optional<TrashError> read(int parent, const std::string& name, int item,
                                                 const std::stop_token& stop);

    [[nodiscard]] const FileStatus& root() const { return m_root; }

    /// The folders below the item, itself included if it is one; none otherwise.
    [[nodiscard]] std::uint32_t folderCount() const { return m_root.isFolder() ? m_tree.size() : 0; }
    [[nodiscard]] const FolderTree& tree() const { return m_tree; }

    /// The entries of a folder, as indices.
    [[nodiscard]] std::size_t firstEntry(std::uint32_t folder) const { return m_first[folder]; }
    [[nodiscard]] std::size_t endOfEntries(std::uint32_t folder) const {
        return folder + 1 < m_first.size() ? m_first[folder + 1] : m_entries.size();
    }
    [[nodiscard]] const Entry& entry(std::size_t index) const { return m_entries[index]; }
    [[nodiscard]] std::size_t entryCount() const { return m_entries.size(); }

    /// What the kernel said about a folder itself.
    [[nodiscard]] const FileStatus& folderStatus(std::uint32_t folder) const {
        return folder == 0 ? m_root : m_entries[m_entryOf[folder]].status;
    }

    /// Bytes of data, holes left out, each file counted once however many names it has.
    [[nodiscard]] std::int64_t bytes() const { return m_bytes; }

private:
    class Reader;

    FileStatus m_root;
    FolderTree m_tree;
    std::vector<Entry> m_entries;        ///< Folder after folder.
    std::vector<std::size_t> m_first;    ///< By folder.
    std::vector<std::size_t> m_entryOf;  ///< By folder; nothing meant for the root.
    std::int64_t m_bytes = 0;
};

/// Whether something is still what it was: the same item, not written to. Hard links may have come and gone.
[[nodiscard]] bool isUnchanged(const FileStatus& before, const FileStatus& now);
