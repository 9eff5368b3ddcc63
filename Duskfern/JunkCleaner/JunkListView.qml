pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.JunkCleaner
import Duskfern.Theme

/// The list of junk items, with keyboard navigation.
ListView {
    id: root

    required property JunkStore store

    readonly property int rowHeight: Math.max(48, Theme.body + Theme.caption + 26)
    readonly property int page: Math.max(1, Math.floor(height / root.rowHeight) - 1)

    function go(row: int) {
        root.forceActiveFocus();
        root.currentIndex = Math.max(0, Math.min(row, root.count - 1));
        root.positionViewAtIndex(root.currentIndex, ListView.Contain);
    }

    Accessible.name: "Elementos encontrados"
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    // Rows outside the viewport are created asynchronously, and warn if the list is destroyed meanwhile; creating one
    // takes little time.
    cacheBuffer: 0
    clip: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    reuseItems: true

    delegate: JunkRow {
        chosen: root.activeFocus && index === root.currentIndex
        focused: true
        height: root.rowHeight
        width: ListView.view.width - 44
        x: 22

        onPressed: row => root.go(row)
        onOpened: row => root.store.revealRow(row)
        onToggled: row => root.store.toggleRow(row)
    }
    model: JunkListModel {
        store: root.store

        // A new list has no current row.
        onModelReset: root.currentIndex = -1
    }

    Keys.onDownPressed: root.go(root.currentIndex + 1)
    Keys.onEnterPressed: root.store.revealRow(root.currentIndex)
    Keys.onPressed: event => {
        const steps = {[Qt.Key_PageUp]: -root.page, [Qt.Key_PageDown]: root.page, [Qt.Key_Home]: -root.count, [Qt.Key_End]: root.count};
        if (event.key in steps) {
            root.go(root.currentIndex + steps[event.key]);
            event.accepted = true;
        }
    }
    Keys.onReturnPressed: root.store.revealRow(root.currentIndex)
    Keys.onSpacePressed: root.store.toggleRow(root.currentIndex)
    Keys.onUpPressed: root.go(Math.max(0, root.currentIndex - 1))

    ScrollThumb {
        view: root
    }

    FocusRing {
        cornerRadius: 4
        inset: 0
        parent: root
        shown: root.activeFocus && root.currentIndex < 0
    }
}
