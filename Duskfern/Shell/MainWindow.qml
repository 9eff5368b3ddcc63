import QtQuick
import Duskfern.Desktop
import Duskfern.Engine
import Duskfern.Shell
import Duskfern.Theme

/// The one window: a menu over the sidebar and the screen.
Window {
    id: root

    required property ScanStore store
    required property ScreenStores screens
    required property WindowDialogs dialogs

    /// Whether the desktop asks for dark colours; set from outside.
    property bool dark: false

    /// What the keyboard acted on before a dialog took it away.
    property Item lastFocus: null

    /// The store of the screen that cleans while it is shown.
    readonly property JunkStore junk: root.screens.junk

    readonly property bool blocked: root.dialogs.isOpen || failure.visible || cleaning.visible || cleaned.visible

    color: Theme.window
    height: 760
    minimumHeight: 650
    minimumWidth: 980
    title: "Duskfern"
    width: 1180

    function restoreFocus() {
        const item = root.lastFocus !== null && root.lastFocus.visible ? root.lastFocus : everything;
        item.forceActiveFocus();
    }

    onActiveFocusItemChanged: {
        if (!root.blocked && root.activeFocusItem !== null) {
            root.lastFocus = root.activeFocusItem;
        }
    }
    onBlockedChanged: {
        if (!root.blocked) {
            Qt.callLater(root.restoreFocus); // qmllint disable type
        }
    }

    Binding {
        property: "dark"
        target: Theme
        value: root.dark
    }

    FocusScope {
        id: everything

        anchors.fill: parent
        enabled: !root.blocked
        focus: true

        Keys.onDeletePressed: content.moveSelectedToTrash()
        Keys.onEscapePressed: root.store.search = ""

        MainMenu {
            id: menu

            store: root.store
            width: parent.width

            onQuitRequested: root.close()
        }

        ContentView {
            id: content

            anchors.bottom: parent.bottom
            anchors.top: menu.bottom
            screens: root.screens
            store: root.store
            width: parent.width
        }
    }

    Shortcut {
        enabled: !root.blocked
        sequence: "Ctrl+O"

        onActivated: root.store.chooseFolder()
    }

    Shortcut {
        enabled: !root.blocked
        sequence: "Ctrl+R"

        onActivated: root.store.startScan()
    }

    Shortcut {
        enabled: !root.blocked
        sequence: "Ctrl+Q"

        onActivated: root.close()
    }

    Shortcut {
        enabled: !root.blocked
        sequence: "Ctrl+F"

        onActivated: content.focusSearch()
    }

    Shortcut {
        enabled: !root.blocked
        sequence: "Ctrl+1"

        onActivated: root.store.mode = Mode.Home
    }

    Shortcut {
        enabled: !root.blocked
        sequence: "Ctrl+2"

        onActivated: root.store.mode = Mode.Space
    }

    Shortcut {
        enabled: !root.blocked
        sequence: "Ctrl+3"

        onActivated: root.store.mode = Mode.Junk
    }

    AlertDialog {
        buttons: root.dialogs.buttons // qmllint disable type
        informativeText: root.dialogs.informativeText
        message: root.dialogs.message
        visible: root.dialogs.isConfirming

        onAnswered: button => root.dialogs.answer(button === 0)
    }

    AlertDialog {
        id: failure

        buttons: ["Aceptar"]
        informativeText: root.store.errorMessage
        message: "No se pudo completar la acción"
        visible: root.store.errorMessage !== "" && !root.dialogs.isOpen

        onAnswered: root.store.clearErrorMessage()
    }

    ProgressDialog {
        id: cleaning

        done: root.junk?.cleanedCount ?? 0
        message: "Moviendo a la Papelera…"
        total: root.junk?.cleaningCount ?? 0
        visible: root.junk?.isCleaning ?? false
    }

    AlertDialog {
        id: cleaned

        buttons: ["Aceptar"]
        message: root.junk?.message ?? ""
        symbol: "sparkles"
        symbolColor: Theme.red
        visible: message !== ""

        onAnswered: root.junk.clearMessage()
    }
}
