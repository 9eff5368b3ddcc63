pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.SpaceMap
import Duskfern.Theme

/// The largest files that match the filter, with a selection.
Card {
    id: root

    required property ScanStore store

    readonly property int rowHeight: Math.max(46, Theme.body + Theme.caption2 + 24)

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

    Item {
        id: header

        height: texts.height + 28
        width: parent.width

        Column {
            id: texts

            anchors.left: parent.left
            anchors.right: badge.left
            anchors.margins: 14
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                font.pixelSize: Theme.headline
                font.weight: Font.DemiBold
                text: "Archivos más grandes"
                width: parent.width
            }

            Label {
                color: Theme.secondary
                font.pixelSize: Theme.caption
                text: "Ordenados por espacio ocupado"
                width: parent.width
            }
        }

        Rectangle {
            id: badge

            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.tint(Theme.primary, 0.08)
            height: count.implicitHeight + 8
            radius: height / 2
            width: count.implicitWidth + 18

            Label {
                id: count

                anchors.centerIn: parent
                font.pixelSize: Theme.caption
                text: Formatters.grouped(root.store.filteredCount)
            }
        }
    }

    Divider {
        id: upperDivider

        anchors.top: header.bottom
        width: parent.width
    }

    ListView {
        id: list

        readonly property int page: Math.max(1, Math.floor(height / root.rowHeight) - 1)

        Accessible.name: "Archivos más grandes"
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.bottom: lowerDivider.top
        anchors.top: upperDivider.bottom
        boundsBehavior: Flickable.StopAtBounds
        bottomMargin: 6
        // Rows outside the viewport are created asynchronously, and warn if the list is destroyed meanwhile; creating
        // one takes little time.
        cacheBuffer: 0
        clip: true
        currentIndex: -1
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        model: files
        reuseItems: true
        topMargin: 6
        width: parent.width

        delegate: FileRow {
            chosen: index === files.selectedRow
            focused: list.activeFocus
            height: root.rowHeight
            width: ListView.view.width

            onOpened: root.store.revealSelected()
            onPressed: row => root.select(row)
        }

        Keys.onDownPressed: root.select(files.rowAfter(1))
        Keys.onEnterPressed: root.store.revealSelected()
        Keys.onPressed: event => {
            const steps = {[Qt.Key_PageUp]: -list.page, [Qt.Key_PageDown]: list.page, [Qt.Key_Home]: -list.count, [Qt.Key_End]: list.count};
            if (event.key in steps) {
                root.select(files.rowAfter(steps[event.key]));
                event.accepted = true;
            }
        }
        Keys.onReturnPressed: root.store.revealSelected()
        Keys.onUpPressed: root.select(files.rowAfter(-1))

        ScrollThumb {
            view: list
        }

        FocusRing {
            cornerRadius: 4
            inset: 0
            shown: list.activeFocus && files.selectedRow < 0
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
