pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.SpaceMap
import Duskfern.Theme

/// The largest files that match the filter, with a selection.
Card {
    id: root

    required property ScanStore store

    readonly property int rowHeight: Math.max(46, Theme.compact ? Math.ceil(1.25 * (Theme.body + Theme.caption2)) : Theme.body + Theme.caption2 + 24)

    function select(row: int) {
        list.forceActiveFocus();
        root.store.selectRow(row);
    }

    /// The item that gets the focus when this is shown.
    function firstFocus(): Item {
        return list;
    }

    function showSelection() {
        if (files.selectedRow >= 0) {
            list.positionViewAtIndex(files.selectedRow, ListView.Contain);
        }
    }

    radius: 14

    FileListModel {
        id: files

        store: root.store
    }

    ListTypeAhead {
        id: typeAhead

        model: files
    }

    CardHeader {
        id: header

        badge: Formatters.grouped(root.store.filteredCount)
        subtitle: "Ordenados por espacio ocupado"
        title: "Archivos más grandes"
        width: parent.width
    }

    RowList {
        id: list

        Accessible.name: "Archivos más grandes"
        anchors.bottom: lowerDivider.top
        anchors.top: header.bottom
        bottomMargin: Theme.inset(6)
        current: files.selectedRow
        model: files
        rowHeight: root.rowHeight
        topMargin: Theme.inset(6)
        width: parent.width

        delegate: FileRow {
            chosen: index === files.selectedRow
            focused: list.activeFocus
            height: root.rowHeight
            width: ListView.view.width

            onOpened: root.store.revealSelected()
            onPressed: row => root.select(row)
        }

        onEntered: root.store.revealSelected()
        onMoved: rows => root.select(files.rowAfter(rows))
        onTyped: text => {
            const row = typeAhead.type(text, files.selectedRow);
            if (row >= 0) {
                root.select(row);
            }
        }
    }

    Connections {
        function onReplaced() {
            list.positionViewAtBeginning();
            // Includes the top margin, which positionViewAtBeginning() leaves out.
            list.contentY = list.originY - list.topMargin;
            root.showSelection();
        }

        function onSelectedRowChanged() {
            root.showSelection();
        }

        target: files
    }

    Divider {
        id: lowerDivider

        anchors.bottom: strip.top
        width: parent.width
    }

    DetailStrip {
        id: strip

        anchors.bottom: parent.bottom
        height: implicitHeight
        store: root.store
        width: parent.width
    }
}
