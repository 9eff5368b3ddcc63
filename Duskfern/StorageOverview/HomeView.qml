pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.StorageOverview
import Duskfern.Theme

/// The home screen: the disks, and the categories of the main one.
Flickable {
    id: root

    required property HomeStore store

    readonly property list<color> colors: [Theme.pink, Theme.purple, Theme.blue, Theme.orange, Theme.mint, Theme.red, Theme.gray]

    readonly property bool scrolls: root.contentHeight > root.height

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
    // `firstFocus()` may focus the page when it does not scroll; turning this off would take the focus away.
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
