pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Duskfern.Engine
import Duskfern.Theme

/// The menu bar with its single menu.
Rectangle {
    id: root

    required property ScanStore store

    readonly property bool open: menu.visible

    // The focus item before the menu opened, to be restored when it closes. Needed because Qt 6.8 restores the one of the
    // previous opening.
    property Item before: null

    /// The menu was open and is closed now.
    signal closed
    signal quitRequested

    function toggle() {
        if (menu.visible) {
            menu.close();
        } else {
            root.before = root.Window.activeFocusItem;
            menu.popup(title, 0, title.height);
            menu.currentIndex = Theme.keyboard ? 0 : -1;
        }
    }

    Accessible.name: "Menú"
    Accessible.role: Accessible.MenuBar
    color: Theme.sidebar
    implicitHeight: title.implicitHeight + 4

    onEnabledChanged: menu.close()

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }

    MainMenuTitle {
        id: title

        anchors.verticalCenter: parent.verticalCenter
        height: implicitHeight
        open: menu.visible
        text: "Archivo"
        width: implicitWidth
        x: 6

        onClicked: root.toggle()
    }

    T.Menu {
        id: menu

        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
        delegate: MainMenuItem {}
        implicitHeight: contentItem.implicitHeight + 2 * padding
        implicitWidth: Math.max(250, 18 * Theme.body)
        margins: 4
        modal: false
        padding: 5
        title: title.text

        // Closes when another item takes the focus; later, because the change may come from the menu's own closing.
        onActiveFocusChanged: {
            if (!menu.activeFocus) {
                Qt.callLater(menu.close); // qmllint disable type
            }
        }
        onAboutToHide: {
            // In Qt 6.8 the window's root item has the focus for a moment.
            const elsewhere = !menu.activeFocus && root.Window.activeFocusItem !== root.Window.contentItem;
            if (elsewhere) {
                root.before = null;
            }
        }
        onClosed: {
            root.before?.forceActiveFocus(Qt.PopupFocusReason);
            root.before = null;
            root.closed();
        }

        background: Rectangle {
            border.color: Theme.tint(Theme.primary, 0.14)
            color: Theme.raised
            radius: 9
        }
        contentItem: ListView {
            currentIndex: menu.currentIndex
            implicitHeight: contentHeight
            interactive: false
            model: menu.contentModel
        }

        MainMenuItem {
            enabled: root.enabled
            keys: "Ctrl+O"
            text: "Elegir carpeta…"

            onTriggered: root.store.chooseFolder()
        }

        MainMenuItem {
            enabled: root.enabled && root.store.hasRoot && !root.store.isScanning
            keys: "Ctrl+R"
            text: "Analizar"

            onTriggered: root.store.startScan()
        }

        MainMenuItem {
            enabled: root.enabled
            keys: "Ctrl+Q"
            text: "Salir"

            onTriggered: root.quitRequested()
        }
    }
}
