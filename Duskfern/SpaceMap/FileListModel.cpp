#include "SpaceMap/FileListModel.h"

#include "Foundation/Formatters.h"

#include <algorithm>
#include <optional>

namespace {

int rows(const FilteredFiles& files) {
    return static_cast<int>(std::min(files.size(), FileListModel::maximumRows));
}

/// The row of `before` that is missing in `after`, if all other rows are equal; the number of rows if the missing file
/// comes after them. None if the lists differ in more than one file.
std::optional<int> removedRow(const FilteredFiles& before, const FilteredFiles& after) {
    if (!before.sharesStorage(after) || before.size() != after.size() + 1) {
        return std::nullopt;
    }
    const auto isSame = [&](int old, int now) {
        return before.keyAt(static_cast<size_t>(old)) == after.keyAt(static_cast<size_t>(now));
    };
    int row = 0;
    while (row < rows(after) && isSame(row, row)) {
        ++row;
    }
    for (int rest = row; rest < rows(after) && rest + 1 < rows(before); ++rest) {
        if (!isSame(rest + 1, rest)) {
            return std::nullopt;
        }
    }
    return row;
}

}  // namespace

void FileListModel::setStore(ScanStore* store) {
    m_store = store;
    connect(store, &ScanStore::filteredFilesChanged, this, &FileListModel::updateRows);
    connect(store, &ScanStore::selectedChanged, this, &FileListModel::updateSelectedRow);
    updateRows();
    Q_EMIT storeChanged();
}

/// Updates the rows. When one file was removed, only its row is removed, so that the list keeps its position. Any other
/// change reuses the existing rows, because creating rows takes longer than a search.
void FileListModel::updateRows() {
    const FilteredFiles& files = m_store->filteredFiles();
    const std::optional<int> removed = removedRow(m_files, files);
    if (removed != m_rowCount) {
        const int kept = removed ? m_rowCount - 1 : std::min(m_rowCount, rows(files));
        if (removed || kept < m_rowCount) {
            beginRemoveRows({}, removed.value_or(kept), removed.value_or(m_rowCount - 1));
            m_files = files;
            m_rowCount = kept;
            endRemoveRows();
        }
        m_files = files;
        if (kept > 0) {
            Q_EMIT dataChanged(index(0), index(kept - 1));
        }
        if (rows(files) > kept) {
            beginInsertRows({}, kept, rows(files) - 1);
            m_rowCount = rows(files);
            endInsertRows();
        }
        if (!removed) {
            m_gap = 0;
        } else if (*removed == m_selectedRow) {
            m_gap = *removed;
        } else if (*removed < m_gap) {
            --m_gap;
        }
    }
    m_files = files;
    updateSelectedRow();
    if (!removed) {
        Q_EMIT replaced();
    }
}

void FileListModel::updateSelectedRow() {
    int row = -1;
    if (m_store->selected()) {
        const FileURL& url = m_store->selected()->id();
        for (int candidate = 0; candidate < m_rowCount && row < 0; ++candidate) {
            row = m_files.isAt(static_cast<size_t>(candidate), url) ? candidate : -1;
        }
    }
    if (row >= 0) {
        m_gap = 0;
    }
    if (std::exchange(m_selectedRow, row) != row) {
        Q_EMIT selectedRowChanged();
    }
}

int FileListModel::rowAfter(int steps) const {
    const int gap = steps > 0 ? m_gap - 1 : m_gap;
    const int row = (m_selectedRow >= 0 ? m_selectedRow : gap) + steps;
    return std::clamp(row, 0, std::max(0, m_rowCount - 1));
}

int FileListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rowCount;
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const FileItem item = m_files[static_cast<size_t>(index.row())];
    switch (role) {
        case NumberRole:
            return QString::number(index.row() + 1);
        case NameRole:
            return item.name();
        case FolderRole:
            return item.parent();
        case SizeTextRole:
            return Formatters::size(item.size);
        case IconRole:
            return FileCategories::icon(item.category);
        default:
            return {};
    }
}

QHash<int, QByteArray> FileListModel::roleNames() const {
    return {{NumberRole, "number"},
            {NameRole, "name"},
            {FolderRole, "folder"},
            {SizeTextRole, "sizeText"},
            {IconRole, "icon"}};
}
