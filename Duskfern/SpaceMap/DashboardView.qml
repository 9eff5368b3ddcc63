import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// The space map screen: a folder is chosen and analysed, and its largest files are shown.
Item {
    id: root

    required property ScanStore store

    function focusSearch() {
        const view = analysis.item as AnalysisView;
        if (root.store.hasRoot) {
            view.focusSearch();
        }
    }

    /// The item that gets the focus when the screen is shown: the files if there are any or a scan is running.
    function firstFocus(): Item {
        const isEmpty = root.store.hasRoot && root.store.filteredCount === 0 && !root.store.isScanning;
        const body = root.store.hasRoot ? analysis : welcome;
        // The linter takes what a loader holds for a mere QtObject.
        return isEmpty ? choose : body.item.firstFocus(); // qmllint disable type
    }

    ScreenHeader {
        id: header

        isPath: root.store.hasRoot
        subtitle: root.store.hasRoot ? root.store.rootPath : "Elige una carpeta para empezar"
        title: "Mapa de espacio"
        width: parent.width

        PushButton {
            id: choose

            symbol: "folder"
            text: "Elegir carpeta"

            onClicked: root.store.chooseFolder()
        }

        PushButton {
            available: root.store.hasRoot && !root.store.isScanning
            kind: PushButton.Prominent
            symbol: "magnifyingglass"
            text: "Analizar"

            onClicked: root.store.startScan()
        }
    }

    Loader {
        id: welcome

        active: !root.store.hasRoot
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: header.bottom

        // Qt 6.4 cannot load bound components.
        sourceComponent: WelcomeView {
            store: root.store // qmllint disable unqualified
        }
    }

    // Made in the background while there is no folder yet, because the window would wait for it when one is chosen.
    Loader {
        id: analysis

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: Theme.inset(18)
        anchors.right: parent.right
        anchors.top: header.bottom
        asynchronous: !root.store.hasRoot
        enabled: root.store.hasRoot
        visible: root.store.hasRoot

        // Likewise.
        sourceComponent: AnalysisView {
            store: root.store // qmllint disable unqualified
        }
    }
}
