import QtQuick
import Duskfern.Shell
import Duskfern.Theme

/// The menu of the menu bar.
CommandMenu {
    id: root

    required property MainMenu bar

    implicitWidth: Math.max(250, 18 * Theme.body)
    title: root.bar.name

    onClosed: root.bar.closed()

    CommandItem {
        enabled: root.bar.enabled
        keys: "Ctrl+O"
        text: "Elegir carpeta…"

        onTriggered: root.bar.store.chooseFolder()
    }

    CommandItem {
        enabled: root.bar.enabled && root.bar.store.hasRoot && !root.bar.store.isScanning
        keys: "Ctrl+R"
        text: "Analizar"

        onTriggered: root.bar.store.startScan()
    }

    CommandItem {
        enabled: root.bar.enabled
        keys: "Ctrl+Q"
        text: "Salir"

        onTriggered: root.bar.quitRequested()
    }
}
