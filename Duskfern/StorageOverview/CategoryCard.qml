import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// A category of storage and its size on the main disk.
Card {
    id: root

    required property int index
    required property storageCategory item
    required property color accent

    /// Whether the keyboard acts on this card.
    property bool focused: false

    Accessible.description: size.text
    Accessible.focusable: true
    Accessible.focused: root.focused
    Accessible.name: root.item.label
    Accessible.role: Accessible.ListItem
    fillOpacity: 0.04
    implicitHeight: Math.max(tile.height, texts.height) + 28
    radius: 12
    strokeOpacity: 0.07

    IconTile {
        id: tile

        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        fillOpacity: 0.12
        radius: 10
        side: 42
        symbol: root.item.icon
        symbolSize: Theme.title2
        tint: root.accent
    }

    Column {
        id: texts

        anchors.left: tile.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: root.item.label
            width: parent.width
        }

        Label {
            id: size

            font.bold: true
            font.pixelSize: Theme.title3
            text: Formatters.size(root.item.size)
            width: parent.width
        }
    }

    FocusRing {
        cornerRadius: root.radius + 2
        inset: -2
        shown: root.focused
    }
}
