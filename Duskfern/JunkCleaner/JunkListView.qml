pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.JunkCleaner
import Duskfern.Theme

/// The list of junk items, with keyboard navigation.
RowList {
    id: root

    required property JunkStore store

    function go(row: int) {
        root.forceActiveFocus();
        root.currentIndex = Math.max(0, Math.min(row, root.count - 1));
        root.positionViewAtIndex(root.currentIndex, ListView.Contain);
    }

    Accessible.name: "Elementos encontrados"
    current: root.currentIndex
    rowHeight: Math.max(48, Theme.compact ? Math.ceil(1.3 * (Theme.body + Theme.caption)) : Theme.body + Theme.caption + 26)

    delegate: JunkRow {
        chosen: root.activeFocus && index === root.currentIndex
        focused: true
        height: root.rowHeight
        width: Math.min(ListView.view.width - 44, Theme.widestRow)
        x: 22

        onOpened: row => root.store.revealRow(row)
        onPressed: row => root.go(row)
        onToggled: row => root.store.toggleRow(row)
    }
    model: JunkListModel {
        id: items

        store: root.store

        // A new list has no current row.
        onModelReset: root.currentIndex = -1
    }

    Keys.onSpacePressed: root.store.toggleRow(root.currentIndex)
    onEntered: root.store.revealRow(root.currentIndex)
    onMoved: rows => root.go(root.currentIndex + rows)
    onTyped: text => {
        const row = typeAhead.type(text, root.currentIndex);
        if (row >= 0) {
            root.go(row);
        }
    }

    ListTypeAhead {
        id: typeAhead

        model: items
    }
}
