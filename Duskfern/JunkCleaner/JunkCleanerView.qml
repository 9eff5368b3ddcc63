pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Engine
import Duskfern.JunkCleaner
import Duskfern.Theme

/// The screen that lists junk and moves it to the Trash.
Item {
    id: root

    required property JunkStore store

    readonly property bool isEmpty: root.store.count === 0 && !root.store.isScanning

    /// The item that gets the focus when the screen is shown: the list if there are items or a scan is running.
    function firstFocus(): Item {
        if (root.isEmpty) {
            return scan;
        }
        return (results.itemAt(0) as JunkResults).firstFocus();
    }

    Component.onCompleted: {
        if (root.store.count === 0) {
            root.store.scan();
        }
    }

    ScreenHeader {
        id: header

        subtitle: "Cachés, registros, temporales y posibles restos de apps"
        title: "Limpiar basura"
        width: parent.width

        PushButton {
            id: scan

            available: !root.store.isScanning
            kind: PushButton.Prominent
            text: "Analizar basura"

            onClicked: root.store.scan()
        }
    }

    // Repeaters create only what is shown, so that screen readers do not find the rest. A Loader cannot load a bound
    // component.
    Item {
        id: body

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: header.bottom

        Repeater {
            id: results

            model: root.isEmpty ? 0 : 1

            JunkResults {
                anchors.fill: body
                store: root.store
            }
        }

        Repeater {
            model: root.isEmpty ? 1 : 0

            Column {
                anchors.centerIn: body
                spacing: 14
                width: body.width - 32

                Symbol {
                    anchors.horizontalCenter: parent.horizontalCenter
                    color: Theme.red
                    name: "sparkles"
                    size: 52
                }

                Label {
                    font.pixelSize: Theme.title
                    horizontalAlignment: Text.AlignHCenter
                    text: "Busca basura olvidada"
                    width: parent.width
                }

                Label {
                    color: Theme.secondary
                    horizontalAlignment: Text.AlignHCenter
                    text: "El análisis es local y no modifica nada."
                    width: parent.width
                }

                ProgressBar {
                    anchors.horizontalCenter: parent.horizontalCenter
                    visible: root.store.isScanning
                    width: 200
                }
            }
        }
    }
}
