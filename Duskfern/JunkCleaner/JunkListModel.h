#pragma once

#include "JunkCleaner/JunkStore.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QAbstractListModel>

/// The items of a junk store as rows, in its order. When items are removed, only their rows are removed, so that the
/// list keeps its position.
class JunkListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

public:
    using QAbstractListModel::QAbstractListModel;

    /// The store to show. May be set once.
    Q_PROPERTY(JunkStore* store READ store WRITE setStore NOTIFY storeChanged REQUIRED)
    [[nodiscard]] JunkStore* store() const { return m_store; }
    void setStore(JunkStore* store);
    Q_SIGNAL void storeChanged();

    enum Role {
        NameRole = Qt::UserRole,
        KindRole,
        OriginRole,
        FolderRole,
        IconRole,
        SizeTextRole,
        SafeRole,
        TickedRole
    };

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void updateItems();
    void updateRow(int row);
    void updateSelection();

    JunkStore* m_store = nullptr;
    std::vector<JunkItem> m_items;
    bool m_isUpToDate = false;  ///< Whether the next change of the selection was already passed on.
};
