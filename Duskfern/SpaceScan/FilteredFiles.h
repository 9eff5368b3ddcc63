#pragma once

#include "SpaceScan/FileList.h"
#include "SpaceScan/RankedBitSet.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>

/// The files of a list that match a category and a search text, in the list's order. A value type; shares the list's
/// storage.
class FilteredFiles {
public:
    FilteredFiles() = default;

    /// The files of `category` whose names contain `search`. Ignores case by the rules of the user's language; blanks
    /// are significant. If `previous` has few files and is sure to include all that match, only those are checked.
    FilteredFiles(FileList files, FileCategory category, QString search, const FilteredFiles* previous = nullptr);

    [[nodiscard]] std::size_t size() const { return m_keys ? m_keys->size() : m_files.size(); }
    [[nodiscard]] bool isEmpty() const { return size() == 0; }
    [[nodiscard]] FileItem operator[](std::size_t row) const { return m_files[indexAt(row)]; }

    /// `FileList::keyAt` of the file in this row.
    [[nodiscard]] std::uint32_t keyAt(std::size_t row) const { return m_keys ? (*m_keys)[row] : m_files.keyAt(row); }

    /// Whether the file in this row is the one at `url`.
    [[nodiscard]] bool isAt(std::size_t row, const FileURL& url) const { return m_files.isAt(indexAt(row), url); }

    /// Whether a key means the same file in both.
    [[nodiscard]] bool sharesStorage(const FilteredFiles& other) const { return m_files.sharesStorage(other.m_files); }

private:
    [[nodiscard]] std::size_t indexAt(std::size_t row) const {
        return m_keys ? m_files.indexOfKey((*m_keys)[row]) : row;
    }
    [[nodiscard]] bool passes(std::uint32_t key) const;
    [[nodiscard]] bool isSupersetOf(const FilteredFiles& narrower) const;
    [[nodiscard]] BitSet matching(const RankedBitSet& candidates) const;

    FileList m_files;
    FileCategory m_category = FileCategory::all;
    QString m_search;
    std::optional<RankedBitSet> m_keys;  ///< None if every file passes.
};
