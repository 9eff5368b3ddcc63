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
        anchors.topMargin: Theme.inset(16)
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

        // The note stands above the buttons where both do not fit side by side.
        readonly property bool stacked: note.implicitWidth + 12 + all.implicitWidth + chosen.implicitWidth + buttons.spacing > width
        readonly property real widest: (width - buttons.spacing) / 2

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.top: metrics.bottom
        anchors.topMargin: Theme.inset(8)
        height: buttons.y + buttons.height

        Label {
            id: note

            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: "Los “posibles restos” no se limpian automáticamente."
            width: actions.stacked ? parent.width : implicitWidth
            y: actions.stacked ? 0 : (buttons.height - height) / 2
        }

        Row {
            id: buttons

            anchors.right: parent.right
            spacing: 8
            y: actions.stacked ? note.height + 4 : 0

            PushButton {
                id: all

                text: "Limpiar todo lo seguro"
                width: Math.min(implicitWidth, actions.widest)

                onClicked: root.store.cleanAllSafe()
            }

            PushButton {
                id: chosen

                available: root.store.hasSelection
                kind: PushButton.Prominent
                text: "Limpiar seleccionados"
                width: Math.min(implicitWidth, actions.widest)

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
        anchors.topMargin: Theme.inset(12)
        store: root.store
    }
}
