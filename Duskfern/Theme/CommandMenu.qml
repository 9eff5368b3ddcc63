pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/// A menu of commands, which gives the focus back when it closes.
T.Menu {
    id: root

    // The focus item before the menu opened. Needed because Qt 6.8 restores the one of the previous opening.
    property Item before: null

    /// Opens the menu at a place of an item, on its first command if the keyboard is in use.
    function openAt(item: Item, place: point) {
        root.before = item.Window.activeFocusItem;
        root.popup(item, place);
        root.currentIndex = Theme.keyboard ? 0 : -1;
    }

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    delegate: CommandItem {}
    implicitHeight: contentItem.implicitHeight + 2 * padding
    implicitWidth: Math.max(200, 15 * Theme.body)
    margins: 4
    modal: false
    padding: 5

    // Closes when another item takes the focus; later, because the change may come from the menu's own closing.
    onActiveFocusChanged: {
        if (!root.activeFocus) {
            // The linter of Qt 6.4 does not know callLater.
            Qt.callLater(root.close); // qmllint disable type
        }
    }
    onAboutToHide: {
        // In Qt 6.8 the window's root item has the focus for a moment.
        const window = root.parent?.Window;
        if (!root.activeFocus && window?.activeFocusItem !== window?.contentItem) {
            root.before = null;
        }
    }
    onClosed: {
        root.before?.forceActiveFocus(Qt.PopupFocusReason);
        root.before = null;
    }

    background: Rectangle {
        border.color: Theme.outline(0.14)
        color: Theme.raised
        radius: 9
    }
    contentItem: ListView {
        currentIndex: root.currentIndex
        implicitHeight: contentHeight
        interactive: false
        model: root.contentModel
    }
}
