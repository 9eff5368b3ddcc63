#include "SpaceScan/FilteredFiles.h"

#include "Foundation/NameMatcher.h"

#include <algorithm>

namespace {

/// Up to this many files, checking single files is quicker than one search of the whole index.
constexpr std::size_t fewFiles = 20'000;

}  // namespace

FilteredFiles::FilteredFiles(FileList files, FileCategory category, QString search, const FilteredFiles* previous)
    : m_files(std::move(files)), m_category(category), m_search(std::move(search)) {
    if (category == FileCategory::all && m_search.isEmpty()) {
        return;
    }
    if (previous != nullptr && previous->m_keys && previous->size() <= fewFiles && previous->isSupersetOf(*this)) {
        m_keys.emplace(matching(*previous->m_keys));
        return;
    }
    BitSet keys(m_files.keyCount());
    if (m_search.isEmpty()) {
        for (std::uint32_t key = 0; key < m_files.keyCount(); ++key) {
            if (passes(key)) {
                keys.insert(key);
            }
        }
    } else if (const auto folded = NameFolding(QLocale()).foldText(m_search)) {
        keys = m_files.search(*folded);
        if (category != FileCategory::all) {
            keys.filter([this](std::uint32_t key) { return passes(key); });
        }
    }
    m_keys.emplace(std::move(keys));
}

/// Whether a file is in the list and in the category.
bool FilteredFiles::passes(std::uint32_t key) const {
    return m_files.containsKey(key) &&
           (m_category == FileCategory::all || m_files.categoryAt(m_files.indexOfKey(key)) == m_category);
}

/// Whether the files that pass `narrower` are sure to be among these. A name that contains a text also contains every
/// part of it. That does not hold outside ASCII: a combining accent after the shorter text changes its last letter.
bool FilteredFiles::isSupersetOf(const FilteredFiles& narrower) const {
    const auto isPlain = [](const QString& text) {
        return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
    };
    return sharesStorage(narrower) && (m_category == FileCategory::all || m_category == narrower.m_category) &&
           narrower.m_search.contains(m_search) && isPlain(narrower.m_search);
}

/// The keys of `candidates` whose files match the filter.
BitSet FilteredFiles::matching(const RankedBitSet& candidates) const {
    BitSet keys(m_files.keyCount());
    NameMatcher matcher(NameFolding(QLocale()), m_search);
    candidates.forEach([&](std::uint32_t key) {
        if (passes(key) && matcher.matches(m_files.nameAt(m_files.indexOfKey(key)))) {
            keys.insert(key);
        }
    });
    return keys;
}
