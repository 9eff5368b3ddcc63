pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// The folders in the current one with a selection, or a message if there are none.
FocusScope {
    id: root

    required property FolderBrowser browser

    readonly property int rowHeight: Math.max(34, Theme.body + 18)

    RowList {
        id: list

        function move(steps: int) {
            const row = root.browser.selectedRow;
            root.browser.select(row < 0 && Math.abs(steps) === 1 ? 0 : row + steps);
        }

        Accessible.name: "Carpetas"
        anchors.fill: parent
        bottomMargin: 6
        current: root.browser.selectedRow
        focus: true
        model: root.browser.folders
        rowHeight: root.rowHeight
        topMargin: 6

        delegate: FolderRow {
            chosen: index === root.browser.selectedRow
            focused: list.activeFocus
            height: root.rowHeight
            width: ListView.view.width

            onOpened: root.browser.enter()
            onPressed: row => {
                list.forceActiveFocus();
                root.browser.select(row);
            }
        }

        Keys.onPressed: event => {
            if (event.key === Qt.Key_Backspace && event.modifiers === Qt.NoModifier) {
                root.browser.goUp();
                event.accepted = true;
            }
        }
        onEntered: root.browser.enter()
        onMoved: rows => list.move(rows)
        onTyped: text => root.browser.typeAhead(text)
    }

    Label {
        anchors.centerIn: parent
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: root.browser.message
        visible: text !== ""
        width: parent.width - 48
        wrapMode: Text.Wrap
    }

    Connections {
        function onSelectionChanged() {
            if (root.browser.selectedRow >= 0) {
                list.positionViewAtIndex(root.browser.selectedRow, ListView.Contain);
            }
        }

        target: root.browser
    }
}
