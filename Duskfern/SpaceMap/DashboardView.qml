import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// The space map screen: a folder is chosen and analysed, and its largest files are shown.
Item {
    id: root

    required property ScanStore store

    function focusSearch() {
        const analysis = body.item as AnalysisView;
        analysis?.focusSearch();
    }

    /// The item that gets the focus when the screen is shown: the files if there are any or a scan is running.
    function firstFocus(): Item {
        const isEmpty = root.store.hasRoot && root.store.filteredCount === 0 && !root.store.isScanning;
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

    // Qt 6.4 cannot load bound components.
    Component {
        id: welcome

        WelcomeView {
            store: root.store // qmllint disable unqualified
        }
    }

    Component {
        id: analysis

        AnalysisView {
            store: root.store // qmllint disable unqualified
        }
    }

    Loader {
        id: body

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: root.store.hasRoot ? Theme.inset(18) : 0
        anchors.right: parent.right
        anchors.top: header.bottom
        sourceComponent: root.store.hasRoot ? analysis : welcome
    }
}
