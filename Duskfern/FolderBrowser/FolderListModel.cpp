#include "FolderBrowser/FolderListModel.h"

#include "Foundation/FileURL.h"

#include <algorithm>
#include <utility>

void FolderListModel::setFolders(std::vector<FolderEntry> folders) {
    if (folders != m_folders) {
        beginResetModel();
        m_folders = std::move(folders);
        endResetModel();
    }
}

int FolderListModel::rowOf(std::string_view name) const {
    const auto found = std::find_if(m_folders.begin(), m_folders.end(),
                                    [&](const FolderEntry& folder) { return folder.name == name; });
    return found == m_folders.end() ? -1 : static_cast<int>(found - m_folders.begin());
}

int FolderListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_folders.size());
}

QVariant FolderListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const FolderEntry& folder = m_folders[static_cast<std::size_t>(index.row())];
    switch (role) {
        case NameRole:
            return displayText(folder.name);
        case IsLinkRole:
            return folder.isLink;
        default:
            return {};
    }
}

QHash<int, QByteArray> FolderListModel::roleNames() const {
    return {{NameRole, "name"}, {IsLinkRole, "isLink"}};
}
