#include "SpaceScan/FilteredFiles.h"

#include "Foundation/NameFolding.h"

#include <algorithm>

namespace {

/// Looking at single files pays off up to this many; beyond it one pass over all names is quicker.
constexpr std::size_t fewFiles = 20'000;

}  // namespace

FilteredFiles::FilteredFiles(FileList files, FileCategory category, QString search, const FilteredFiles* previous)
    : m_files(std::move(files)), m_category(category), m_search(std::move(search)) {
    if (category == FileCategory::all && m_search.isEmpty()) {
        return;
    }
    m_keys.emplace();
    if (previous != nullptr && previous->m_keys && previous->size() <= fewFiles && previous->includesAllOf(*this)) {
        takeFrom(*previous->m_keys);
        return;
    }
    const auto take = [this](std::uint32_t key) {
        if (passes(key)) {
            m_keys->push_back(key);
        }
    };
    if (m_search.isEmpty()) {
        for (std::size_t index = 0; index < m_files.size(); ++index) {
            take(m_files.keyAt(index));
        }
    } else if (const auto folded = NameFolding(QLocale()).foldText(m_search)) {
        const KeySet found = m_files.search(*folded);
        if (category == FileCategory::all) {
            m_keys->reserve(found.count());
            found.forEach([this](std::uint32_t key) { m_keys->push_back(key); });
        } else {
            found.forEach(take);
        }
    }
}

/// Whether a file is in the list and of the category.
bool FilteredFiles::passes(std::uint32_t key) const {
    return m_files.containsKey(key) &&
           (m_category == FileCategory::all || m_files.categoryAt(m_files.indexOfKey(key)) == m_category);
}

/// A longer text that contains the shorter one is found in no other names. That is not true of accents: one that comes
/// to stand behind the shorter text changes its last letter.
bool FilteredFiles::includesAllOf(const FilteredFiles& narrower) const {
    const auto isPlain = [](const QString& text) {
        return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
    };
    return sharesStorage(narrower) && (m_category == FileCategory::all || m_category == narrower.m_category) &&
           narrower.m_search.contains(m_search) && isPlain(narrower.m_search);
}

void FilteredFiles::takeFrom(const std::vector<std::uint32_t>& candidates) {
    NameMatcher matcher(NameFolding(QLocale()), m_search);
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(*m_keys), [&](std::uint32_t key) {
        return passes(key) && matcher.matches(m_files.nameAt(m_files.indexOfKey(key)));
    });
}
