#pragma once

#include "SpaceScan/ScanStore.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QAbstractListModel>

/// The rows of the file list: the first files that match the store's filter.
class FileListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

public:
    /// The maximum number of rows.
    static constexpr std::size_t maximumRows = 1000;

    enum Role { NumberRole = Qt::UserRole, NameRole, FolderRole, SizeTextRole, IconRole };

    Q_PROPERTY(ScanStore* store READ store WRITE setStore NOTIFY storeChanged)
    [[nodiscard]] ScanStore* store() const { return m_store; }
    void setStore(ScanStore* store);
    Q_SIGNAL void storeChanged();

    /// The row of the store's selected file; -1 if it has none.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }
    Q_SIGNAL void selectedRowChanged();

    /// The rows show a new list of files; `selectedRow` is up to date.
    Q_SIGNAL void replaced();

    /// The row `steps` below the current position (above if negative), limited to the existing rows. The position is
    /// the selected row; after that row was removed, between its neighbours; else before the first row.
    [[nodiscard]] Q_INVOKABLE int rowAfter(int steps) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void updateRows();
    void updateSelectedRow();

    ScanStore* m_store = nullptr;
    FilteredFiles m_files;
    int m_rowCount = 0;
    int m_selectedRow = -1;
    int m_gap = 0;  ///< Without a selected row: the row below the current position.
};
