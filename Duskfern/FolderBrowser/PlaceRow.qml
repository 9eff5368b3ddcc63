import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// A shortcut, with the heading of its group if it is the first. Emits a signal when pressed.
Item {
    id: root

    required property int index
    required property folderPlace modelData
    property bool chosen: false
    property bool focused: false

    signal pressed

    Accessible.name: root.modelData.name
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: root.chosen
    implicitHeight: row.y + row.height

    Accessible.onPressAction: root.pressed()

    Label {
        id: heading

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 10
        color: Theme.secondary
        font.pixelSize: Theme.caption
        font.weight: Font.DemiBold
        text: root.modelData.heading
        visible: text !== ""
        y: 12
    }

    Rectangle {
        id: row

        anchors.left: parent.left
        anchors.leftMargin: 6
        anchors.right: parent.right
        anchors.rightMargin: 7
        border.color: Theme.focus
        border.width: root.focused ? 2 : 0
        color: root.chosen ? Theme.selection : pointer.containsMouse ? Theme.tint(Theme.primary, pointer.pressed ? 0.09 : 0.045) : "transparent"
        height: Math.max(32, Theme.body + 16)
        radius: 8
        y: heading.visible ? heading.y + heading.height + 4 : 0

        Symbol {
            id: icon

            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            name: root.modelData.symbol
            size: Theme.body * 1.15
        }

        Label {
            Accessible.ignored: true
            anchors.left: icon.right
            anchors.leftMargin: 9
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            elide: Text.ElideMiddle
            maximumLineCount: 1
            text: root.modelData.name
        }

        MouseArea {
            id: pointer

            anchors.fill: parent
            hoverEnabled: true

            onClicked: root.pressed()
        }
    }
}
