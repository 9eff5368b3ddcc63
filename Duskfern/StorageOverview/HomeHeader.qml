import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// The title of the home screen and its button.
Item {
    id: root

    required property HomeStore store

    /// The button, which is disabled during a refresh.
    readonly property alias button: refresh

    implicitHeight: Math.max(titles.height, refresh.height)

    Column {
        id: titles

        anchors.left: parent.left
        anchors.right: refresh.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Label {
            font.bold: true
            font.pixelSize: Theme.compact ? Theme.title : Theme.largeTitle
            text: "Estado de almacenamiento"
            width: parent.width
            wrapMode: Text.Wrap
        }

        Label {
            color: Theme.secondary
            text: "Una vista general de tus discos y del espacio usado"
            width: parent.width
            wrapMode: Text.Wrap
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
