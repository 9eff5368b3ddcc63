import QtQuick
import Duskfern.Engine
import Duskfern.FolderBrowser
import Duskfern.Shell
import Duskfern.Theme

/// Dialogs and messages that block the window, one at a time.
FocusScope {
    id: root

    required property ScanStore store
    required property WindowDialogs dialogs
    required property FolderBrowser folderBrowser
    required property ScreenStores screens

    /// The store of the junk screen; null while another screen is shown.
    readonly property JunkStore junk: root.screens.junk

    /// The dialog to show. A message waits until nothing else is open.
    readonly property Component current: {
        if (root.dialogs.isOpen) {
            return root.dialogs.isConfirming ? question : root.folderBrowser.isOpen ? chooser : null;
        }
        const cleaned = root.junk?.message ? cleaning : null;
        return root.junk?.isCleaning ? progress : root.store.errorMessage !== "" ? failure : cleaned;
    }

    /// Whether a dialog is shown.
    readonly property bool open: root.current !== null

    // Qt 6.4 cannot load bound components.
    Component {
        id: chooser

        FolderBrowserDialog {
            browser: root.folderBrowser // qmllint disable unqualified
        }
    }

    Component {
        id: question

        AlertDialog {
            buttons: root.dialogs.buttons // qmllint disable type unqualified
            informativeText: root.dialogs.informativeText // qmllint disable unqualified
            message: root.dialogs.message // qmllint disable unqualified
            wholeName: root.dialogs.wholeName // qmllint disable unqualified

            onAnswered: button => root.dialogs.answer(button === 0) // qmllint disable unqualified
        }
    }

    Component {
        id: failure

        AlertDialog {
            buttons: ["Aceptar"]
            informativeText: root.store.errorMessage // qmllint disable unqualified
            message: "No se pudo completar la acción"

            onAnswered: root.store.clearErrorMessage() // qmllint disable unqualified
        }
    }

    Component {
        id: progress

        ProgressDialog {
            done: root.junk?.cleanedCount ?? 0 // qmllint disable unqualified
            message: "Moviendo a la Papelera…"
            percent: root.junk?.copiedPercent ?? -1 // qmllint disable unqualified
            total: root.junk?.cleaningCount ?? 0 // qmllint disable unqualified
        }
    }

    Component {
        id: cleaning

        AlertDialog {
            buttons: ["Aceptar"]
            informativeText: root.junk?.messageReasons ?? "" // qmllint disable unqualified
            message: root.junk?.message ?? "" // qmllint disable unqualified
            symbol: "sparkles"
            symbolColor: Theme.red

            onAnswered: root.junk.clearMessage() // qmllint disable unqualified
        }
    }

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: root.current
    }
}
