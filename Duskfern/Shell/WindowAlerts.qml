import QtQuick
import Duskfern.Desktop
import Duskfern.Engine
import Duskfern.Theme

/// Everything that is shown over the window and blocks it.
Item {
    id: root

    required property ScanStore store
    required property WindowDialogs dialogs

    /// The store of the screen that cleans, while it is shown.
    required property JunkStore junk

    /// Whether something is shown that the stores have to say.
    readonly property bool open: failure.visible || cleaning.visible || cleaned.visible

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
