#include "SpaceScan/FilteredFiles.h"

#include "Foundation/NameFolding.h"

FilteredFiles::FilteredFiles(FileList files, FileCategory category, const QString& search) : m_files(std::move(files)) {
    if (category == FileCategory::all && search.isEmpty()) {
        return;
    }
    const NameMatcher matcher(NameFolding(QLocale()), search);
    m_indices.emplace();
    for (std::size_t index = 0; index < m_files.size(); ++index) {
        const bool ofCategory = category == FileCategory::all || m_files.categoryAt(index) == category;
        if (ofCategory && (search.isEmpty() || matcher.matches(m_files.nameAt(index)))) {
            m_indices->push_back(static_cast<std::uint32_t>(index));
        }
    }
}
