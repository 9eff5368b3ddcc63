import QtQuick

/// A page that scrolls where it does not fit, by pointer and keys.
Flickable {
    id: root

    readonly property bool scrolls: root.contentHeight > root.height

    function scroll(distance: real) {
        root.contentY = Math.max(0, Math.min(root.contentY + distance, root.contentHeight - root.height));
    }

    /// Scrolls until an item of the page is in sight.
    function reveal(item: Item) {
        const top = item.mapToItem(root.contentItem, 0, 0).y - 12;
        const bottom = top + item.height + 24;
        if (top < root.contentY) {
            root.scroll(top - root.contentY);
        } else if (bottom > root.contentY + root.height) {
            root.scroll(bottom - root.contentY - root.height);
        }
    }

    // The page may have the focus when it does not scroll; turning this off would take it away.
    activeFocusOnTab: root.scrolls || root.activeFocus
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentWidth: width

    Keys.onPressed: event => {
        const steps = {[Qt.Key_Up]: -48, [Qt.Key_Down]: 48, [Qt.Key_PageUp]: -root.height, [Qt.Key_PageDown]: root.height, [Qt.Key_Home]: -root.contentHeight, [Qt.Key_End]: root.contentHeight};
        if (event.key in steps) {
            root.scroll(steps[event.key]);
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
        shown: root.activeFocus && root.scrolls
    }
}
