pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.StorageOverview
import Duskfern.Theme

/// The first screen: the disks, and what kinds of things fill the main one.
Flickable {
    id: root

    required property HomeStore store

    readonly property list<color> colors: [Theme.pink, Theme.purple, Theme.blue, Theme.orange, Theme.mint, Theme.red, Theme.gray]

    readonly property bool scrolls: root.contentHeight > root.height

    /// Whether the screen has been seen, and what it shows been asked for.
    property bool appeared: false

    function appear() {
        root.appeared = true;
        if (root.store.volumes.length === 0) {
            root.store.refresh();
        }
    }

    /// What the keyboard acts on when the screen is shown: the page, unless all of it is in sight.
    function firstFocus(): Item {
        if (root.scrolls || !refresh.enabled) {
            return root;
        }
        return refresh;
    }

    function scroll(distance: real) {
        root.contentY = Math.max(0, Math.min(root.contentY + distance, root.contentHeight - root.height));
    }

    Accessible.name: "Estado de almacenamiento"
    Accessible.role: Accessible.Pane
    // What has the focus cannot be told that Tab does not stop there.
    activeFocusOnTab: root.scrolls || root.activeFocus
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: content.height + 40
    contentWidth: width

    Keys.onDownPressed: root.scroll(48)
    Keys.onPressed: event => {
        const steps = {[Qt.Key_PageUp]: -root.height, [Qt.Key_PageDown]: root.height, [Qt.Key_Home]: -root.contentHeight, [Qt.Key_End]: root.contentHeight};
        if (event.key in steps) {
            root.scroll(steps[event.key]);
            event.accepted = true;
        }
    }
    Keys.onUpPressed: root.scroll(-48)

    ScrollThumb {
        view: root
    }

    FocusRing {
        cornerRadius: 4
        inset: 0
        parent: root
        shown: root.activeFocus && root.scrolls
    }

    // While that goes on there is no button to be on.
    Connections {
        enabled: root.activeFocus
        target: root.store

        function onIsScanningChanged() {
            root.firstFocus().forceActiveFocus();
        }
    }

    // Asking the disks may take a moment; the window is there first.
    Connections {
        enabled: !root.appeared
        target: root.Window.window

        function onFrameSwapped() {
            root.appear();
        }
    }

    Column {
        id: content

        spacing: 18
        width: root.width - 40
        x: 20
        y: 20

        Item {
            height: Math.max(titles.height, refresh.height)
            width: parent.width

            Column {
                id: titles

                anchors.left: parent.left
                anchors.right: refresh.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                spacing: 3

                Label {
                    font.bold: true
                    font.pixelSize: Theme.largeTitle
                    text: "Estado de almacenamiento"
                    width: parent.width
                }

                Label {
                    color: Theme.secondary
                    text: "Una vista general de tus discos y del espacio usado"
                    width: parent.width
                }
            }

            PushButton {
                id: refresh

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                available: !root.store.isScanning
                kind: PushButton.Prominent
                symbol: "arrow.clockwise"
                text: "Actualizar"

                onClicked: root.store.refresh()
            }
        }

        // What is not shown is not there, not even for a screen reader; a Loader takes no bound component.
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

        Repeater {
            model: root.store.volumes

            VolumeCard {
                required property var modelData

                volume: modelData
                width: content.width
            }
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
            width: parent.width
        }

        Grid {
            id: grid

            readonly property real minimumWidth: 210
            readonly property real cellWidth: (width - (columns - 1) * spacing) / columns

            columns: Math.max(1, Math.floor((width + spacing) / (minimumWidth + spacing)))
            spacing: 12
            width: parent.width

            Repeater {
                model: root.store.categories

                CategoryCard {
                    required property int index
                    required property var modelData

                    accent: root.colors[index % root.colors.length]
                    item: modelData
                    width: grid.cellWidth
                }
            }
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
