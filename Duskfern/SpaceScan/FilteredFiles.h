#pragma once

#include "SpaceScan/FileList.h"

#include <QtCore/QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// The files of a list that match a category and a search text, in the list's order. A value type; shares the list's
/// storage. Not to be read by several threads: the first rows are looked up when they are asked for.
class FilteredFiles {
public:
    FilteredFiles() = default;

    /// The files of `category` whose names contain `search`. Ignores case by the rules of the user's language; blanks
    /// are significant. Takes over what it can from `previous`, so that a new category or a removed file needs no
    /// search.
    FilteredFiles(FileList files, FileCategory category, QString search, const FilteredFiles* previous = nullptr);

    [[nodiscard]] std::size_t size() const { return m_numbers ? m_size : m_files.size(); }
    [[nodiscard]] bool isEmpty() const { return size() == 0; }
    [[nodiscard]] FileItem operator[](std::size_t row) const { return m_files[m_files.indexOfKey(keyAt(row))]; }

    /// `FileList::keyAt` of the file in this row. Meant for the first rows; takes longer for later ones.
    [[nodiscard]] std::uint32_t keyAt(std::size_t row) const;

    /// Whether the file in this row is the one at `url`.
    [[nodiscard]] bool isAt(std::size_t row, const FileURL& url) const {
        return m_files.isAt(m_files.indexOfKey(keyAt(row)), url);
    }

    /// Whether a key means the same file in both.
    [[nodiscard]] bool sharesStorage(const FilteredFiles& other) const { return m_files.sharesStorage(other.m_files); }

private:
    void lookUpRows(std::size_t count) const;

    FileList m_files;
    QString m_search;
    std::shared_ptr<const BitSet> m_found;  ///< The result of the search; null without one.
    std::optional<BitSet> m_numbers;        ///< The numbers of the files that match. None if every file does.
    std::size_t m_size = 0;                 ///< How many these are.

    mutable std::vector<std::uint32_t> m_rows;  ///< The keys of the first rows.
    mutable std::uint32_t m_nextKey = 0;        ///< Keys below it are in `m_rows` if they match.
};
