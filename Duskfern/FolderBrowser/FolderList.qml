pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// The folders in the current one with a selection, or a message if there are none.
FocusScope {
    id: root

    required property FolderBrowser browser

    readonly property int rowHeight: Math.max(34, Theme.body + 18)

    ListView {
        id: list

        readonly property int page: Math.max(1, Math.floor(height / root.rowHeight) - 1)

        function move(steps: int) {
            const row = root.browser.selectedRow;
            root.browser.select(row < 0 && Math.abs(steps) === 1 ? 0 : row + steps);
        }

        Accessible.name: "Carpetas"
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        bottomMargin: 6
        cacheBuffer: 0
        clip: true
        currentIndex: -1
        focus: true
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        model: root.browser.folders
        reuseItems: true
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
            const steps = {[Qt.Key_Up]: -1, [Qt.Key_Down]: 1, [Qt.Key_PageUp]: -list.page, [Qt.Key_PageDown]: list.page, [Qt.Key_Home]: -list.count, [Qt.Key_End]: list.count};
            const isPlain = (event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier)) === 0;
            event.accepted = isPlain;
            if (isPlain && event.key in steps) {
                list.move(steps[event.key]);
            } else if (isPlain && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)) {
                root.browser.enter();
            } else if (isPlain && event.key === Qt.Key_Backspace) {
                root.browser.goUp();
            } else {
                event.accepted = isPlain && root.browser.typeAhead(event.text);
            }
        }

        ScrollThumb {
            view: list
        }
    }

    FocusRing {
        cornerRadius: 4
        inset: 2
        shown: list.activeFocus && root.browser.selectedRow < 0
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
