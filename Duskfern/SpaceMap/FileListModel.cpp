#include "SpaceMap/FileListModel.h"

#include "Foundation/Formatters.h"

#include <algorithm>

namespace {

int rows(const FilteredFiles& files) {
    return static_cast<int>(std::min(files.size(), FileListModel::maximumRows));
}

/// The row that is in `before` and missing in `after`, all others being the same; -1 if more than that differs.
int removedRow(const FilteredFiles& before, const FilteredFiles& after) {
    if (!before.sharesStorage(after) || before.size() != after.size() + 1) {
        return -1;
    }
    int row = 0;
    while (row < rows(after) && before.keyAt(static_cast<size_t>(row)) == after.keyAt(static_cast<size_t>(row))) {
        ++row;
    }
    for (int rest = row; rest < rows(after) && rest + 1 < rows(before); ++rest) {
        if (before.keyAt(static_cast<size_t>(rest) + 1) != after.keyAt(static_cast<size_t>(rest))) {
            return -1;
        }
    }
    return row < rows(before) ? row : -1;
}

}  // namespace

void FileListModel::setStore(ScanStore* store) {
    m_store = store;
    connect(store, &ScanStore::filteredFilesChanged, this, &FileListModel::follow);
    connect(store, &ScanStore::selectedChanged, this, &FileListModel::findSelection);
    follow();
    Q_EMIT storeChanged();
}

/// A file that went to the Trash leaves its row, and the rest of the list where it is; any other change makes a new
/// list.
void FileListModel::follow() {
    const FilteredFiles& files = m_store->filteredFiles();
    const int removed = removedRow(m_files, files);
    if (removed >= 0) {
        const int before = rows(m_files);
        beginRemoveRows({}, removed, removed);
        m_files = files;
        m_shownRows = before - 1;
        endRemoveRows();
        if (rows(m_files) == before) {
            beginInsertRows({}, before - 1, before - 1);
            m_shownRows = before;
            endInsertRows();
        }
        if (removed < m_shownRows) {
            // Each later file has moved up by one.
            Q_EMIT dataChanged(index(removed), index(m_shownRows - 1), {NumberRole});
        }
    } else {
        beginResetModel();
        m_files = files;
        m_shownRows = rows(m_files);
        endResetModel();
    }
    findSelection();
}

void FileListModel::findSelection() {
    int row = -1;
    if (m_store->selected()) {
        const FileURL& url = m_store->selected()->id();
        for (int candidate = 0; candidate < m_shownRows && row < 0; ++candidate) {
            row = m_files.isAt(static_cast<size_t>(candidate), url) ? candidate : -1;
        }
    }
    if (std::exchange(m_selectedRow, row) != row) {
        Q_EMIT selectedRowChanged();
    }
}

int FileListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_shownRows;
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
