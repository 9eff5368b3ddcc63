import QtQuick
import Duskfern.Theme

/// A list of rows of equal height, with a single Tab stop. Its owner keeps the selection and handles the signals of the
/// keys.
ListView {
    id: root

    required property int rowHeight

    /// The row that the keys act on; -1 if there is none, and the list itself shows the focus ring.
    property int current: -1

    readonly property int page: Math.max(1, Math.floor(root.height / root.rowHeight) - 1)

    /// A key moves the selection by this many rows.
    signal moved(rows: int)

    /// Return or Enter was pressed.
    signal entered

    /// A key gave text.
    signal typed(text: string)

    /// Screen readers follow the row; a list that has the focus is all that Qt tells them.
    function tellRow() {
        if (root.activeFocus) {
            ScreenReader.moveFocus(root.current < 0 ? root : root.itemAtIndex(root.current));
        }
    }

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

    // Later, when the list has scrolled to the row. The linter of Qt 6.4 does not know callLater.
    onActiveFocusChanged: Qt.callLater(root.tellRow) // qmllint disable type
    onCurrentChanged: Qt.callLater(root.tellRow) // qmllint disable type
    Keys.onPressed: event => {
        const rows = {[Qt.Key_Up]: -1, [Qt.Key_Down]: 1, [Qt.Key_PageUp]: -root.page, [Qt.Key_PageDown]: root.page, [Qt.Key_Home]: -root.count, [Qt.Key_End]: root.count};
        if ((event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier)) !== 0) {
            return;
        }
        event.accepted = true;
        if (event.key in rows) {
            root.moved(rows[event.key]);
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            root.entered();
        } else if (event.text >= " " && event.key !== Qt.Key_Delete) {
            root.typed(event.text);
        } else {
            event.accepted = false;
        }
    }

    ScrollThumb {
        view: root
    }

    FocusRing {
        cornerRadius: 4
        inset: 0
        parent: root
        shown: root.activeFocus && root.current < 0
    }
}
