import QtQuick
import Duskfern.Theme

/// The icon and the name of the program.
Item {
    id: root

    implicitHeight: Math.max(icon.height, texts.height) + 2 * Theme.inset(16)

    AppIcon {
        id: icon

        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        height: 38
        radius: 9
        width: 38
        x: 16
    }

    Column {
        id: texts

        anchors.left: icon.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        Label {
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
            text: "Duskfern 2.1"
            width: parent.width
        }

        Label {
            color: Theme.secondary
            font.letterSpacing: 2
            font.pixelSize: Theme.fixed8
            font.weight: Font.DemiBold
            text: "DISK & CLEAN"
            width: parent.width
        }
    }
}
