pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Theme

/// A list of the sidebar with one chosen row. The arrow keys go through it; Return and Space choose.
RowList {
    id: root

    required property list<string> titles
    required property list<string> symbols
    required property int chosen
    required property color highlight

    signal picked(row: int)

    function go(row: int) {
        root.current = Math.max(0, Math.min(row, root.count - 1));
        root.positionViewAtIndex(root.current, ListView.Contain);
    }

    Accessible.role: Accessible.PageTabList
    bottomMargin: Theme.inset(8)
    // Short: all rows exist at once.
    cacheBuffer: 1000
    interactive: root.contentHeight + root.topMargin + root.bottomMargin > root.height
    leftMargin: 8
    model: root.titles.length
    reuseItems: false
    rightMargin: 8
    rowHeight: Math.ceil(metrics.height) + 2 * Theme.inset(8)
    spacing: 4
    topMargin: Theme.inset(8)

    delegate: SidebarRow {
        chosen: root.chosen === index
        focused: root.activeFocus && root.current === index
        height: root.rowHeight
        highlight: root.highlight
        symbol: root.symbols[index]
        text: root.titles[index]
        width: root.width - 16

        onClicked: root.picked(index)
    }

    Keys.onSpacePressed: root.picked(root.current)
    onActiveFocusChanged: {
        if (root.activeFocus) {
            root.go(root.chosen);
        }
    }
    onEntered: root.picked(root.current)
    onMoved: rows => root.go(root.current + rows)

    FontMetrics {
        id: metrics

        font.family: Theme.family
        font.pixelSize: Theme.body
    }
}
