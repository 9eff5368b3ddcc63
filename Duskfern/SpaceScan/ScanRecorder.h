#pragma once

#include "Foundation/ChunkedVector.h"
#include "Foundation/DirectoryWalk.h"
#include "Foundation/NameFolding.h"
#include "SpaceScan/FileList.h"

#include <atomic>
#include <cstdint>
#include <string>

/// Records compactly, folder by folder, what one worker of a scan finds. After the walk the recorders of all workers
/// are merged into one list.
class ScanRecorder final : public WalkVisitor {
public:
    explicit ScanRecorder(const NameFolding& folding) : m_folding(folding) {}

    void beginFolder(WalkFolder& folder) override;
    void file(std::string_view name, const FileStatus& status) override;
    void subfolder(const WalkFolder& folder) override;
    void unreadable() override { ++m_skipped; }

    [[nodiscard]] std::int64_t skipped() const { return m_skipped; }

    /// The number of files so far. Any thread may call it.
    [[nodiscard]] std::int64_t count() const { return m_count.load(std::memory_order_relaxed); }

    /// Merges everything that `recorders` hold below `root`, in the order of a depth-first walk: the contents of a
    /// subfolder come where its name is among its siblings. Fills the search index except for its keys; `numbers` gets
    /// the index's number for each record. Empties the recorders. Files beyond the 4 GiB of names that a list can hold
    /// are added to `skipped`.
    [[nodiscard]] static FileList::Storage merge(const FileURL& url, const WalkFolder& root,
                                                 const std::vector<ScanRecorder*>& recorders,
                                                 std::vector<std::uint32_t>& numbers, std::int64_t& skipped);

private:
    /// A subfolder found while a folder was listed.
    struct Child {
        const WalkFolder* folder;
        std::size_t filesBefore;  ///< Index into `m_files` at which its own files are inserted.
    };

    /// The contents of one folder: ranges of its recorder's files and children.
    struct Listing {
        const ScanRecorder* recorder;
        std::size_t firstFile;
        std::size_t endFile;
        std::size_t firstChild;
        std::size_t endChild;
    };

    const NameFolding& m_folding;
    StringArena m_names;
    FoldedNames m_foldedNames;
    std::string m_folded;
    ChunkedVector<FileRecord> m_files;
    ChunkedVector<Child> m_children;
    ChunkedVector<Listing> m_listings;
    std::int64_t m_skipped = 0;
    std::atomic<std::int64_t> m_count = 0;
    bool m_fits = true;               ///< Whether the names fit into the merged list.
    std::uint32_t m_namesBase = 0;    ///< Added to positions in `m_names` when merged.
    std::uint32_t m_numbersBase = 0;  ///< Added to file numbers when merged.
};
