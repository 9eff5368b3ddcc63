import QtQuick
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

    /// Whether the window has been on the screen.
    property bool seen: false

    readonly property bool blocked: root.dialogs.isOpen || alerts.open

    /// Gives the keyboard to what is in front; there it goes on where it was.
    function settle() {
        if (root.folderBrowser.isOpen) {
            // It takes the keyboard by itself.
            return;
        }
        if (root.blocked) {
            alerts.forceActiveFocus();
        } else {
            everything.forceActiveFocus();
        }
    }

    color: Theme.window
    height: 760
    minimumHeight: 650
    minimumWidth: 980
    title: "Duskfern"
    width: 1180

    onBlockedChanged: root.settle()
    onClosing: root.dialogs.answer(false)
    onFrameSwapped: root.seen = true

    Binding {
        property: "dark"
        target: Theme
        value: root.dark
    }

    Binding {
        property: "keyboard"
        target: Theme
        value: keeper.keyboard
    }

    FocusKeeper {
        id: keeper

        window: root

        onLost: {
            if (!root.blocked && !menu.open) {
                content.takeFocus();
            } else if (alerts.open) {
                alerts.forceActiveFocus();
            }
        }
    }

    WindowKeys {
        blocked: root.blocked
        window: root

        onAnalyse: root.store.startScan()
        onChooseFolder: root.store.chooseFolder()
        onMenu: menu.toggle()
        onQuit: root.close()
        onSearch: content.focusSearch()
        onShowHome: content.show(Mode.Home)
        onShowJunk: content.show(Mode.Junk)
        onShowSpace: content.show(Mode.Space)
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

            onClosed: root.settle()
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

    // Not needed for the first frame, and not quick to make.
    Loader {
        id: alerts

        readonly property bool open: (alerts.item as WindowAlerts)?.open ?? false

        active: root.seen
        anchors.fill: parent

        sourceComponent: WindowAlerts {
            dialogs: root.dialogs // qmllint disable unqualified
            focus: true
            folderBrowser: root.folderBrowser // qmllint disable unqualified
            junk: root.screens.junk // qmllint disable unqualified
            store: root.store // qmllint disable unqualified
        }
    }
}
