import QtQuick

/// A list of rows of one height that is one stop of the Tab key. Its owner keeps the selection and is told what the keys
/// ask for.
ListView {
    id: root

    required property int rowHeight

    /// Whether the list itself shows that it has the focus, because no row does.
    property bool ringShown: false

    readonly property int page: Math.max(1, Math.floor(root.height / root.rowHeight) - 1)

    /// A key asks to move the selection by so many rows.
    signal moved(rows: int)

    /// Return or Enter was pressed.
    signal entered

    Accessible.role: Accessible.List
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    // Rows outside the viewport are created asynchronously, and warn if the list is destroyed meanwhile; creating
    // one takes little time.
    cacheBuffer: 0
    clip: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    reuseItems: true

    Keys.onPressed: event => {
        const rows = {[Qt.Key_Up]: -1, [Qt.Key_Down]: 1, [Qt.Key_PageUp]: -root.page, [Qt.Key_PageDown]: root.page, [Qt.Key_Home]: -root.count, [Qt.Key_End]: root.count};
        if ((event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier)) !== 0) {
            return;
        }
        if (event.key in rows) {
            root.moved(rows[event.key]);
            event.accepted = true;
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            root.entered();
            event.accepted = true;
        }
    }

    ScrollThumb {
        view: root
    }

    FocusRing {
        cornerRadius: 4
        inset: 0
        parent: root
        shown: root.activeFocus && root.ringShown
    }
}
