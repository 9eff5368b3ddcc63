pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Duskfern.Shell
import Duskfern.Theme

/// The menu of the menu bar.
T.Menu {
    id: root

    required property MainMenu bar

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    delegate: MainMenuItem {}
    implicitHeight: contentItem.implicitHeight + 2 * padding
    implicitWidth: Math.max(250, 18 * Theme.body)
    margins: 4
    modal: false
    padding: 5
    title: root.bar.name

    // Closes when another item takes the focus; later, because the change may come from the menu's own closing.
    onActiveFocusChanged: {
        if (!root.activeFocus) {
            Qt.callLater(root.close); // qmllint disable type
        }
    }
    onAboutToHide: {
        // In Qt 6.8 the window's root item has the focus for a moment.
        const window = root.parent?.Window;
        if (!root.activeFocus && window?.activeFocusItem !== window?.contentItem) {
            root.bar.before = null;
        }
    }
    onClosed: root.bar.restoreFocus()

    background: Rectangle {
        border.color: Theme.tint(Theme.primary, 0.14)
        color: Theme.raised
        radius: 9
    }
    contentItem: ListView {
        currentIndex: root.currentIndex
        implicitHeight: contentHeight
        interactive: false
        model: root.contentModel
    }

    MainMenuItem {
        enabled: root.bar.enabled
        keys: "Ctrl+O"
        text: "Elegir carpeta…"

        onTriggered: root.bar.store.chooseFolder()
    }

    MainMenuItem {
        enabled: root.bar.enabled && root.bar.store.hasRoot && !root.bar.store.isScanning
        keys: "Ctrl+R"
        text: "Analizar"

        onTriggered: root.bar.store.startScan()
    }

    MainMenuItem {
        enabled: root.bar.enabled
        keys: "Ctrl+Q"
        text: "Salir"

        onTriggered: root.bar.quitRequested()
    }
}
