#include "SpaceScan/FilteredFiles.h"

#include "Foundation/NameFolding.h"

#include <algorithm>

namespace {

/// The rows that are looked up at once.
constexpr std::size_t rowsAtOnce = 1024;

BitSet foundIn(const FileList& files, const QString& search) {
    const std::optional<std::string> folded = NameFolding(QLocale()).foldText(search);
    return folded ? files.search(*folded) : BitSet(files.numberCount());
}

}  // namespace

FilteredFiles::FilteredFiles(FileList files, FileCategory category, QString search, const FilteredFiles* previous)
    : m_files(std::move(files)), m_search(std::move(search)) {
    if (!m_search.isEmpty()) {
        const bool isKnown = previous != nullptr && previous->m_search == m_search && sharesStorage(*previous);
        m_found = isKnown ? previous->m_found : std::make_shared<const BitSet>(foundIn(m_files, m_search));
        m_numbers.emplace(*m_found);
        if (category != FileCategory::all) {
            m_numbers->intersect(m_files.numbersOf(category));
        }
    } else if (category != FileCategory::all) {
        m_numbers.emplace(m_files.numbersOf(category));
    }
    if (m_numbers) {
        m_files.dropRemoved(*m_numbers);
        m_size = m_numbers->count();
    }
}

std::uint32_t FilteredFiles::keyAt(std::size_t row) const {
    if (!m_numbers) {
        return m_files.keyAt(row);
    }
    if (row >= m_rows.size()) {
        lookUpRows(std::min(m_size, row + rowsAtOnce));
    }
    return m_rows[row];
}

/// Looks up the keys of at least the first `count` rows.
void FilteredFiles::lookUpRows(std::size_t count) const {
    // With many matches the list is read from its begin until there are enough of them; with few it is quicker to sort
    // the keys of all.
    const double steps = static_cast<double>(count) * m_files.keyCount() / static_cast<double>(m_size);
    if (steps > static_cast<double>(m_size)) {
        m_rows.clear();
        m_rows.reserve(m_size);
        m_numbers->forEach([this](std::uint32_t number) { m_rows.push_back(m_files.keyOfNumber(number)); });
        std::sort(m_rows.begin(), m_rows.end());
        return;
    }
    m_rows.reserve(count);
    for (; m_rows.size() < count; ++m_nextKey) {
        if (m_numbers->contains(m_files.numberOfKey(m_nextKey))) {
            m_rows.push_back(m_nextKey);
        }
    }
}
