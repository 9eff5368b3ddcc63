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

    Item {
        id: header

        height: Math.max(titles.height, scan.height) + 32
        width: parent.width

        Column {
            id: titles

            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: scan.left
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            Label {
                font.bold: true
                font.pixelSize: Theme.title2
                text: "Limpiar basura"
                width: parent.width
            }

            Label {
                color: Theme.secondary
                font.pixelSize: Theme.caption
                text: "Cachés, registros, temporales y posibles restos de apps"
                width: parent.width
            }
        }

        PushButton {
            id: scan

            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            available: !root.store.isScanning
            kind: PushButton.Prominent
            text: "Analizar basura"

            onClicked: root.store.scan()
        }
    }

    Divider {
        id: divider

        anchors.top: header.bottom
        width: parent.width
    }

    // Repeaters create only what is shown, so that screen readers do not find the rest. A Loader cannot load a bound
    // component.
    Item {
        id: body

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: divider.bottom

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
