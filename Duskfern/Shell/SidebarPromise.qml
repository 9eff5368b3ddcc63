import QtQuick
import Duskfern.Theme

/// The note that nothing leaves the machine.
Rectangle {
    id: root

    color: Theme.tint(Theme.primary, 0.06)
    implicitHeight: promise.height + 2 * Theme.inset(12)
    radius: 12

    Symbol {
        id: shield

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.mint
        name: "lock.shield.fill"
        size: Theme.title3
        x: 12
    }

    Column {
        id: promise

        anchors.left: shield.right
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        Label {
            font.bold: true
            font.pixelSize: Theme.callout
            text: "100% local"
            width: parent.width
        }

        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: "Tus archivos nunca salen de este Mac."
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
