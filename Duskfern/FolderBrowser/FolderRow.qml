import QtQuick
import Duskfern.Theme

/// One folder of the list. Only says that it was pressed.
Item {
    id: root

    required property int index
    required property string name
    required property bool isLink
    property bool chosen: false

    /// Whether the list has the keyboard.
    property bool focused: false

    signal pressed(row: int)
    signal opened

    Accessible.description: root.isLink ? "Enlace a una carpeta" : ""
    Accessible.name: root.name
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: root.chosen

    // The second press goes into the folder, as a double click does.
    Accessible.onPressAction: root.chosen ? root.opened() : root.pressed(root.index)

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 12
        border.color: Theme.focus
        border.width: root.chosen && root.focused ? 2 : 0
        color: root.chosen ? Theme.selection : pointer.containsMouse ? Theme.tint(Theme.primary, pointer.pressed ? 0.09 : 0.045) : "transparent"
        radius: 8
    }

    Symbol {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.blue
        name: "folder.fill"
        size: Theme.body * 1.3
    }

    Label {
        id: title

        Accessible.ignored: true
        anchors.left: icon.right
        anchors.leftMargin: 10
        anchors.right: link.visible ? link.left : parent.right
        anchors.rightMargin: link.visible ? 8 : 24
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        maximumLineCount: 1
        text: root.name
    }

    Symbol {
        id: link

        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        name: "arrow.up.right"
        size: Theme.caption2
        visible: root.isLink
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onDoubleClicked: root.opened()
        onPressed: root.pressed(root.index)
    }
}
