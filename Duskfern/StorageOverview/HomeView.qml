pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.StorageOverview
import Duskfern.Theme

/// The home screen: the disks, and the categories of the main one.
ScrollPage {
    id: root

    required property HomeStore store

    readonly property list<color> colors: [Theme.pink, Theme.purple, Theme.blue, Theme.orange, Theme.mint, Theme.red, Theme.gray]

    /// Whether the first frame was shown and the values were requested.
    property bool appeared: false

    function appear() {
        root.appeared = true;
        if (root.store.volumes.length === 0) {
            root.store.refresh();
        }
    }

    /// The item that gets the focus when the screen is shown: the page if it scrolls, else the refresh button.
    function firstFocus(): Item {
        if (root.scrolls || root.store.isScanning) {
            return root;
        }
        return header.button;
    }

    Accessible.name: "Estado de almacenamiento"
    Accessible.role: Accessible.Pane
    contentHeight: content.height + 40

    // A refresh disables the button, which may have the focus.
    Connections {
        enabled: root.activeFocus
        target: root.store

        function onIsScanningChanged() {
            root.firstFocus().forceActiveFocus();
        }
    }

    // Waits for the first frame, because querying the disks may block for a moment.
    Connections {
        enabled: !root.appeared
        target: root.Window.window

        function onFrameSwapped() {
            // The linter of Qt 6.4 does not know callLater.
            Qt.callLater(root.appear); // qmllint disable type
        }
    }

    Column {
        id: content

        spacing: 18
        width: root.width - 40
        x: 20
        y: 20

        HomeHeader {
            id: header

            store: root.store
            width: parent.width
        }

        // A Repeater creates only what is shown, so that screen readers do not find the rest. A Loader cannot load a
        // bound component.
        Repeater {
            model: root.store.isScanning ? 1 : 0

            Column {
                spacing: 6
                width: content.width

                Label {
                    id: progressLabel

                    text: "Calculando tamaños… Puede tardar unos minutos"
                    width: parent.width
                }

                ProgressBar {
                    Accessible.name: progressLabel.text
                    width: parent.width
                }
            }
        }

        VolumeList {
            store: root.store
            visible: count > 0
            width: Math.min(parent.width, Theme.widestRow)

            onReached: card => root.reveal(card)
        }

        Label {
            font.bold: true
            font.pixelSize: Theme.title2
            text: "Uso del disco principal"
            width: parent.width
        }

        CategoryBar {
            categories: root.store.categories
            colors: root.colors
            cornerRadius: 7
            emptyColor: Theme.tint(Theme.primary, 0.08)
            height: 15
            width: Math.min(parent.width, Theme.widestRow)
        }

        CategoryGrid {
            colors: root.colors
            store: root.store
            width: parent.width

            onReached: card => root.reveal(card)
        }

        Label {
            bottomPadding: 10
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: "“Sistema y otros” es una estimación que incluye macOS, datos del sistema, instantáneas APFS y archivos del usuario fuera de las carpetas mostradas."
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
