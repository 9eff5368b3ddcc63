import QtQuick
import Duskfern.Desktop
import Duskfern.Engine
import Duskfern.FolderBrowser
import Duskfern.Shell
import Duskfern.Theme

/// The one window: a menu over the sidebar and the screen.
Window {
    id: root

    required property ScanStore store
    required property ScreenStores screens
    required property WindowDialogs dialogs
    required property FolderBrowser folderBrowser

    /// Whether the desktop asks for dark colours; set from outside.
    property bool dark: false

    /// What the keyboard acted on before a dialog took it away.
    property Item lastFocus: null

    /// Whether the window has been on the screen.
    property bool seen: false

    readonly property bool blocked: root.dialogs.isOpen || alerts.open

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

    onFrameSwapped: root.seen = true

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

    // Made when it is needed first.
    Loader {
        active: root.folderBrowser.isOpen || item !== null

        sourceComponent: FolderBrowserDialog {
            browser: root.folderBrowser // qmllint disable unqualified
        }
    }

    // Not needed for the first frame, and not quick to make.
    Loader {
        id: alerts

        readonly property bool open: (alerts.item as WindowAlerts)?.open ?? false

        active: root.seen

        sourceComponent: WindowAlerts {
            dialogs: root.dialogs // qmllint disable unqualified
            junk: root.screens.junk // qmllint disable unqualified
            store: root.store // qmllint disable unqualified
        }
    }
}
