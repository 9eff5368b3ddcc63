import QtQuick
import Duskfern.Engine
import Duskfern.JunkCleaner
import Duskfern.Theme

/// The results of a scan: three numbers, the actions and the list of items.
Item {
    id: root

    required property JunkStore store

    /// The item that gets the focus when this is shown.
    function firstFocus(): Item {
        return items;
    }

    Row {
        id: metrics

        readonly property real cardWidth: (width - 2 * spacing) / 3

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.top: parent.top
        anchors.topMargin: 16
        spacing: 10

        JunkMetric {
            icon: "doc.on.doc.fill"
            title: "ENCONTRADOS"
            value: String(root.store.count)
            width: metrics.cardWidth
        }

        JunkMetric {
            icon: "trash.fill"
            title: "SELECCIONADO"
            value: Formatters.size(root.store.selectedSize)
            width: metrics.cardWidth
        }

        JunkMetric {
            icon: "checkmark.shield.fill"
            title: "BAJO RIESGO"
            value: String(root.store.safeCount)
            width: metrics.cardWidth
        }
    }

    Item {
        id: actions

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.top: metrics.bottom
        anchors.topMargin: 8
        height: buttons.height

        Label {
            anchors.left: parent.left
            anchors.right: buttons.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: "Los “posibles restos” no se limpian automáticamente."
        }

        Row {
            id: buttons

            anchors.right: parent.right
            spacing: 8

            PushButton {
                text: "Limpiar todo lo seguro"

                onClicked: root.store.cleanAllSafe()
            }

            PushButton {
                available: root.store.hasSelection
                kind: PushButton.Prominent
                text: "Limpiar seleccionados"

                onClicked: root.store.cleanSelected()
            }
        }
    }

    JunkListView {
        id: items

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: actions.bottom
        anchors.topMargin: 12
        store: root.store
    }
}
