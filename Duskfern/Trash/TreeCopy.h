#pragma once

#include "Trash/FileContents.h"
#include "Trash/TreeManifest.h"

#include <map>

/// Copies what a manifest lists, and compares the copy with the original.
class TreeCopy {
public:
    /// The original: the entry `name` of the open folder `parent`, itself open as `item`.
    struct Source {
        int parent;
        const std::string& name;
        int item;
    };

    /// `place` is an open private folder. All arguments passed by reference or descriptor must outlive this.
    TreeCopy(const TreeManifest& manifest, Source source, int place, Trash::Progress progress, std::stop_token stop)
        : m_manifest(manifest),
          m_source(source),
          m_place(place),
          m_progress(std::move(progress)),
          m_stop(std::move(stop)) {}

    /// The name of the copy in `place`.
    static constexpr const char* copyName = "item";

    /// Makes the copy. Returns nothing, or why it is incomplete.
    [[nodiscard]] std::optional<TrashError> copy();

    /// Syncs the copy, reads it again, and checks that the original still matches the manifest.
    [[nodiscard]] std::optional<TrashError> syncAndCompare();

private:
    /// An entry of the original and its copy.
    struct Pair {
        int from;
        const char* fromName;
        int to;
        const char* toName;
    };

    template <typename Each>
    std::optional<TrashError> forEachEntry(const Each& each);
    template <typename Each>
    std::optional<TrashError> withFolder(std::uint32_t folder, const Each& each);

    std::optional<TrashError> copyEntry(const Pair& pair, const FileStatus& status);
    std::optional<TrashError> copyLinked(const Pair& pair, const FileStatus& status);
    std::optional<TrashError> copyOne(const Pair& pair, const FileStatus& status);
    int copyFile(const Pair& pair, const FileStatus& status);
    std::optional<TrashError> copyFolderAttributes();
    std::optional<TrashError> compareEntry(const Pair& pair, const FileStatus& status);
    int compareFile(const Pair& pair, const FileStatus& status);
    [[nodiscard]] TrashError failure(int number) const;
    bool advance(std::int64_t bytes);

    const TreeManifest& m_manifest;
    Source m_source;
    int m_place;
    Trash::Progress m_progress;
    std::stop_token m_stop;
    std::int64_t m_done = 0;  ///< Sum of bytes copied and bytes compared.
    bool m_isReflinked =
        true;  ///< Whether all files share their data with the original, so that no comparison is needed.
    std::map<std::pair<std::uint64_t, std::uint64_t>, std::string>
        m_links;  ///< Name in the folder `links` by device and inode.
};
