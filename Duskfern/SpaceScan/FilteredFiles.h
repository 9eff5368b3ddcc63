#pragma once

#include "SpaceScan/FileList.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>

/// The files of a list that pass a filter, in the list's order. A value; shares the list.
class FilteredFiles {
public:
    FilteredFiles() = default;

    /// The files of that category (`all` for every one) whose name contains `search` without regard to case, by the
    /// rules of the user's language. Blanks count. Where `previous` has few files and is sure to have all that pass,
    /// only those are looked at.
    FilteredFiles(FileList files, FileCategory category, QString search, const FilteredFiles* previous = nullptr);

    [[nodiscard]] std::size_t size() const { return m_keys ? m_keys->size() : m_files.size(); }
    [[nodiscard]] bool isEmpty() const { return size() == 0; }
    [[nodiscard]] FileItem operator[](std::size_t row) const { return m_files[indexAt(row)]; }

    /// `FileList::keyAt` of the file in this row.
    [[nodiscard]] std::uint32_t keyAt(std::size_t row) const { return m_keys ? (*m_keys)[row] : m_files.keyAt(row); }

    /// Whether the file in this row is the one at `url`.
    [[nodiscard]] bool isAt(std::size_t row, const FileURL& url) const { return m_files.isAt(indexAt(row), url); }

    /// Whether the keys of both mean the same files.
    [[nodiscard]] bool sharesStorage(const FilteredFiles& other) const { return m_files.sharesStorage(other.m_files); }

private:
    [[nodiscard]] std::size_t indexAt(std::size_t row) const {
        return m_keys ? m_files.indexOfKey((*m_keys)[row]) : row;
    }
    [[nodiscard]] bool passes(std::uint32_t key) const;
    [[nodiscard]] bool includesAllOf(const FilteredFiles& narrower) const;
    [[nodiscard]] KeySet matching(const RankedKeys& candidates) const;

    FileList m_files;
    FileCategory m_category = FileCategory::all;
    QString m_search;
    std::optional<RankedKeys> m_keys;  ///< None when every file passes.
};
