import QtQuick
import Duskfern.Theme

/// One file of the list. Only says that it was pressed.
Item {
    id: root

    required property int index
    required property string number
    required property string name
    required property string folder
    required property string sizeText
    required property string icon
    property bool chosen: false

    /// Whether the list has the keyboard.
    property bool focused: false

    signal pressed(row: int)
    signal opened(row: int)

    Accessible.description: root.folder
    Accessible.name: root.name + ", " + root.sizeText
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: root.chosen

    Accessible.onPressAction: {
        if (root.enabled) {
            root.pressed(root.index);
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 6
        border.color: Theme.focus
        border.width: root.chosen && root.focused ? 2 : 0
        color: root.chosen ? Theme.selection : pointer.containsMouse ? Theme.tint(Theme.primary, pointer.pressed ? 0.09 : 0.045) : "transparent"
        radius: 8
    }

    Label {
        id: numberLabel

        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        elide: Text.ElideNone
        font.pixelSize: Theme.caption2
        horizontalAlignment: Text.AlignHCenter
        text: root.number
        width: 24
    }

    IconTile {
        id: tile

        anchors.left: numberLabel.right
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        fillOpacity: 0.12
        radius: 7
        side: 28
        symbol: root.icon
        symbolSize: Theme.body * 1.1
        tint: Theme.teal
    }

    Label {
        id: nameLabel

        anchors.bottom: parent.verticalCenter
        anchors.left: tile.right
        anchors.leftMargin: 10
        anchors.right: sizeLabel.left
        anchors.rightMargin: 10
        maximumLineCount: 1
        text: root.name
    }

    Label {
        anchors.left: nameLabel.left
        anchors.right: nameLabel.right
        anchors.top: parent.verticalCenter
        anchors.topMargin: 2
        color: Theme.secondary
        font.pixelSize: Theme.caption2
        maximumLineCount: 1
        text: root.folder
    }

    Label {
        id: sizeLabel

        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.teal
        font.pixelSize: Theme.caption
        text: root.sizeText
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onDoubleClicked: root.opened(root.index)
        onPressed: root.pressed(root.index)
    }
}
