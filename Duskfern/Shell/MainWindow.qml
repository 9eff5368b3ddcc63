import QtQuick
import Duskfern.Engine
import Duskfern.FolderBrowser
import Duskfern.Shell
import Duskfern.Theme

/// The window: the menu above the sidebar and the screen.
Window {
    id: root

    required property ScanStore store
    required property ScreenStores screens
    required property WindowDialogs dialogs
    required property FolderBrowser folderBrowser

    /// Whether dark colours are used; set by the application.
    property bool dark: false

    /// Whether nothing should move that need not; set by the application.
    property bool reducesMotion: false

    /// Whether outlines and lesser texts stand out more; set by the application.
    property bool raisesContrast: false

    /// The colour of what is selected or has the focus, transparent for the program's own; set by the application.
    property color accent: "transparent"

    /// Whether there may be a dialog or a message to show.
    readonly property bool alerting: root.dialogs.isOpen || root.store.errorMessage !== "" || (root.screens.junk?.isCleaning ?? false) || (root.screens.junk?.message ?? "") !== ""

    readonly property bool blocked: root.dialogs.isOpen || alerts.open

    /// Moves the focus to the topmost part of the window; within it, to the item that had it before.
    function restoreFocus() {
        if (root.folderBrowser.isOpen) {
            // The dialog takes the focus itself.
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

    onAlertingChanged: {
        if (alerts.item === null) {
            alerts.setSource("qrc:/qt/qml/Duskfern/Shell/WindowAlerts.qml", {dialogs: root.dialogs, focus: true, folderBrowser: root.folderBrowser, screens: root.screens, store: root.store});
        }
    }
    onBlockedChanged: root.restoreFocus()
    onClosing: root.dialogs.answer(false)

    WindowLook {
        accent: root.accent
        dark: root.dark
        keyboard: focusWatcher.keyboard
        still: root.reducesMotion
        strong: root.raisesContrast
        windowHeight: root.height
    }

    FocusWatcher {
        id: focusWatcher

        window: root

        onLost: {
            if (!root.blocked) {
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

            onClosed: root.restoreFocus()
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

    HintTip {}

    WindowAnnouncer {
        screens: root.screens
        store: root.store
    }

    // Loaded when it is first needed, because that takes time and memory. Given as a file, because the type of an inline
    // one would be loaded at launch.
    Loader {
        id: alerts

        // The linter takes what a loader holds for a mere QtObject.
        readonly property bool open: alerts.item?.open ?? false // qmllint disable type

        anchors.fill: parent
    }
}
