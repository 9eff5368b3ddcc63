#pragma once

#include "Foundation/ChunkedVector.h"
#include "Foundation/DirectoryWalk.h"
#include "Foundation/NameFolding.h"
#include "SpaceScan/FileList.h"

#include <atomic>
#include <cstdint>
#include <string>

/// Keeps what one worker of a scan finds, folder by folder, compactly. After the walk the recorders of all workers
/// are put together to one list.
class ScanRecorder final : public WalkVisitor {
public:
    explicit ScanRecorder(const NameFolding& folding) : m_folding(folding) {}

    void beginFolder(WalkFolder& folder) override;
    void file(std::string_view name, const FileStatus& status) override;
    void subfolder(const WalkFolder& folder) override;
    void unreadable() override { ++m_skipped; }

    [[nodiscard]] std::int64_t skipped() const { return m_skipped; }

    /// How many files there are so far; any thread may ask.
    [[nodiscard]] std::int64_t count() const { return m_count.load(std::memory_order_relaxed); }

    /// Everything that `recorders` hold below `root`, in the order in which one walk from folder to folder would have
    /// met it: each subfolder with all its contents where its name stands among its siblings. The search index is
    /// filled but has no keys yet; `numbers` gets the number there of each record. Empties the recorders; adds what no
    /// list can hold (beyond 4 GiB of names) to `skipped`.
    [[nodiscard]] static FileList::Storage gather(const FileURL& url, const WalkFolder& root,
                                                  const std::vector<ScanRecorder*>& recorders,
                                                  std::vector<std::uint32_t>& numbers, std::int64_t& skipped);

private:
    /// A folder met among the files of another one.
    struct Child {
        const WalkFolder* folder;
        std::size_t filesBefore;  ///< Index into the recorder's files.
    };

    /// What one folder holds: ranges of its recorder's files and children.
    struct Listing {
        const ScanRecorder* recorder;
        std::size_t firstFile;
        std::size_t endFile;
        std::size_t firstChild;
        std::size_t endChild;
    };

    const NameFolding& m_folding;
    NameArena m_names;
    FoldedNames m_foldedNames;
    std::string m_folded;
    ChunkedVector<FileRecord> m_files;
    ChunkedVector<Child> m_children;
    ChunkedVector<Listing> m_listings;
    std::int64_t m_skipped = 0;
    std::atomic<std::int64_t> m_count = 0;
    bool m_fits = true;               ///< Whether the gathered list has room for this.
    std::uint32_t m_namesBase = 0;    ///< What to add to a position in `m_names` once they are gathered.
    std::uint32_t m_numbersBase = 0;  ///< What to add to the number of a file then.
};
