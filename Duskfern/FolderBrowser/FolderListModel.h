#pragma once

#include "FolderBrowser/FolderListing.h"

#include <QtCore/QAbstractListModel>

#include <string_view>

/// The rows of the current folder.
class FolderListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { NameRole = Qt::UserRole, IsLinkRole };

    using QAbstractListModel::QAbstractListModel;

    /// Replaces the rows.
    void setFolders(std::vector<FolderEntry> folders);

    [[nodiscard]] const std::vector<FolderEntry>& folders() const { return m_folders; }

    /// The row of the folder with this name; -1 if there is none.
    [[nodiscard]] int rowOf(std::string_view name) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<FolderEntry> m_folders;
};
