#pragma once

#include "SpaceMap/BubbleLayout.h"
#include "SpaceScan/ScanStore.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QAbstractListModel>
#include <QtCore/QSizeF>

#include <algorithm>
#include <vector>

/// The bubbles of the map: the first files that match the store's filter, each with its circle in the map's area.
/// Painting, clicks and tooltips use these circles.
class BubbleMapModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

public:
    enum Role { CenterXRole = Qt::UserRole, CenterYRole, DiameterRole, NameRole, SizeTextRole, PathRole };

    Q_PROPERTY(ScanStore* store READ store WRITE setStore NOTIFY storeChanged)
    [[nodiscard]] ScanStore* store() const { return m_store; }
    void setStore(ScanStore* store);
    Q_SIGNAL void storeChanged();

    /// The size of the map's area.
    Q_PROPERTY(QSizeF area READ area WRITE setArea NOTIFY areaChanged)
    [[nodiscard]] QSizeF area() const { return m_area; }
    void setArea(const QSizeF& area);
    Q_SIGNAL void areaChanged();

    Q_PROPERTY(int count READ count NOTIFY countChanged)
    [[nodiscard]] int count() const { return static_cast<int>(m_items.size()); }
    Q_SIGNAL void countChanged();

    /// The bubble with the focus, or -1. It follows its file: `focusedMoved` is emitted when the file is in another
    /// bubble, or in none.
    Q_PROPERTY(int focused READ focused NOTIFY focusedMoved)
    [[nodiscard]] int focused() const { return m_focused; }
    Q_SIGNAL void focusedMoved();

    /// The bubble that Tab goes to: the one that had the focus last.
    Q_PROPERTY(int tabStop READ tabStop NOTIFY tabStopChanged)
    [[nodiscard]] int tabStop() const { return std::max(0, std::min(m_lastFocused, count() - 1)); }
    Q_SIGNAL void tabStopChanged();

    /// The bubble to which a key goes from `bubble`: an arrow to the nearest in its direction, Home and End to the
    /// first and the last. -1 for any other key.
    [[nodiscard]] Q_INVOKABLE int bubbleAfter(int key, int bubble) const;

    /// To be called when a bubble gets or loses the focus. Ignored while the bubbles change.
    Q_INVOKABLE void setFocus(int bubble, bool hasFocus);

    [[nodiscard]] const std::vector<FileItem>& items() const { return m_items; }
    [[nodiscard]] const std::vector<Bubble>& bubbles() const { return m_bubbles; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void updateItems();
    void show(std::vector<FileItem> items);
    void layOutBubbles();

    ScanStore* m_store = nullptr;
    QSizeF m_area;
    std::vector<FileItem> m_items;
    std::vector<Bubble> m_bubbles;
    int m_focused = -1;
    int m_lastFocused = 0;
    bool m_isUpdating = false;
};
