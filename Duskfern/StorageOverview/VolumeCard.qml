import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// A volume with its name and usage.
Card {
    id: root

    required property int index
    required property volumeInfo volume

    /// Whether the keyboard acts on this card.
    property bool focused: false

    Accessible.description: used.text + ", " + free.text
    Accessible.focusable: true
    Accessible.focused: root.focused
    Accessible.name: name.text
    Accessible.role: Accessible.ListItem
    implicitHeight: Math.max(tile.height, texts.height) + 32
    radius: 14

    IconTile {
        id: tile

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        fillOpacity: 0.1
        radius: 12
        side: 54
        symbol: root.volume.isStartupDisk ? "internaldrive.fill" : "externaldrive.fill"
        symbolSize: 32
        tint: Theme.red
    }

    Column {
        id: texts

        anchors.left: tile.right
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        Item {
            height: Math.max(name.height, used.height)
            width: parent.width

            NameLabel {
                id: name

                anchors.left: parent.left
                anchors.right: used.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: Theme.headline
                font.weight: Font.DemiBold
                text: root.volume.name === "" ? "Macintosh HD" : root.volume.name
            }

            Label {
                id: used

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.secondary
                font.pixelSize: Theme.caption
                text: Formatters.size(root.volume.used) + " usados de " + Formatters.size(root.volume.total)
            }
        }

        UsageBar {
            fraction: root.volume.usedFraction
            width: parent.width
        }

        Label {
            id: free

            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: Formatters.size(root.volume.available) + " disponibles · " + root.volume.usedPercent + "% ocupado"
            width: parent.width
        }
    }

    FocusRing {
        cornerRadius: root.radius + 2
        inset: -2
        shown: root.focused
    }
}
