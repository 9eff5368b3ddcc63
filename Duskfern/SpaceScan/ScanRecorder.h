#pragma once

#include "Foundation/ChunkedVector.h"
#include "Foundation/DirectoryWalk.h"
#include "Foundation/NameFolding.h"
#include "SpaceScan/FileList.h"

#include <atomic>
#include <cstdint>
#include <string>

/// Records compactly, folder by folder, what one worker of a scan finds. `mergedFiles` makes one list of what all
/// workers recorded.
class ScanRecorder final : public WalkVisitor {
public:
    struct Listing;

    /// A folder met while another one was listed. Set as the tag of its `WalkFolder`.
    struct Folder {
        std::uint32_t name = 0;             ///< Position in `folderNames`.
        std::uint32_t filesBefore = 0;      ///< Number of the file before which its own files are inserted.
        const Listing* contents = nullptr;  ///< Null if it was not listed.
    };

    /// The contents of one folder: ranges of its recorder's files and folders.
    struct Listing {
        const ScanRecorder* recorder;
        std::uint32_t firstFile;
        std::uint32_t endFile;
        std::uint32_t firstFolder;
        std::uint32_t endFolder;
    };

    explicit ScanRecorder(const NameFolding& folding) : m_folding(folding) {}

    void beginFolder(const WalkFolder& folder) override;
    void file(std::string_view name, const FileStatus& status) override;
    void subfolder(WalkFolder& folder) override;
    void unreadable() override { ++m_skipped; }

    [[nodiscard]] std::int64_t skipped() const { return m_skipped; }

    /// The number of files so far. Any thread may call it.
    [[nodiscard]] std::int64_t count() const { return m_count.load(std::memory_order_relaxed); }

    /// What was recorded, to be taken over after the walk.
    SearchableNames names;
    StringArena folderNames;
    ChunkedVector<FileSize> sizes;  ///< One a name.
    std::uint64_t sizeBits = 0;     ///< The bits that are set in any size.
    ChunkedVector<Folder> folders;
    std::uint32_t firstNumber = 0;      ///< Number of its first file in the merged list.
    std::uint32_t folderNamesBase = 0;  ///< To be added to the positions of its folders' names.

private:
    const NameFolding& m_folding;
    std::string m_folded;
    ChunkedVector<Listing> m_listings;
    std::int64_t m_skipped = 0;
    std::atomic<std::int64_t> m_count = 0;
};

/// Merges what `recorders` hold below `root` into one list: largest files first, files of equal size in the order of a
/// depth-first walk, in which the contents of a subfolder come where its name is among its siblings. Empties the
/// recorders. Files for which a list has no room are added to `skipped`.
[[nodiscard]] FileList mergedFiles(const FileURL& url, const ScanRecorder::Folder& root,
                                   const std::vector<ScanRecorder*>& recorders, std::int64_t& skipped);
