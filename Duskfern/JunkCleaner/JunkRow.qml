import QtQuick
import Duskfern.Theme

/// One item that could go. Only says what was pressed.
Item {
    id: root

    required property int index
    required property string name
    required property string kind
    required property string origin
    required property string icon
    required property string sizeText
    required property bool safe
    required property bool ticked

    /// Whether the keyboard acts on this row.
    property bool current: false

    signal pressed(row: int)
    signal toggled(row: int)
    signal revealed(row: int)

    Accessible.description: detail.text
    Accessible.name: root.name + ", " + root.sizeText
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: root.current

    Accessible.onPressAction: {
        if (root.enabled) {
            root.pressed(root.index);
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -6
        anchors.rightMargin: -6
        border.color: Theme.focus
        border.width: root.current ? 2 : 0
        color: pointer.containsMouse ? Theme.tint(Theme.primary, 0.045) : "transparent"
        radius: 8
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onDoubleClicked: root.revealed(root.index)
        onPressed: root.pressed(root.index)
    }

    PlainButton {
        id: box

        Accessible.checkable: true
        Accessible.checked: root.ticked
        Accessible.role: Accessible.CheckBox
        anchors.left: parent.left
        anchors.leftMargin: -4
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.ticked ? "checkmark.square.fill" : "square"
        text: root.name
        tint: root.ticked ? Theme.red : Theme.secondary

        onClicked: root.toggled(root.index)
    }

    Item {
        id: kindIcon

        anchors.left: box.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        height: 28
        width: 28

        Symbol {
            anchors.centerIn: parent
            color: root.safe ? Theme.orange : Theme.red
            name: root.icon
            size: Theme.body * 1.3
        }
    }

    Label {
        id: nameLabel

        anchors.bottom: parent.verticalCenter
        anchors.bottomMargin: 1
        anchors.left: kindIcon.right
        anchors.leftMargin: 12
        anchors.right: sizeLabel.left
        anchors.rightMargin: 12
        elide: Text.ElideMiddle
        maximumLineCount: 1
        text: root.name
    }

    Label {
        id: detail

        anchors.left: nameLabel.left
        anchors.right: nameLabel.right
        anchors.top: parent.verticalCenter
        anchors.topMargin: 1
        color: Theme.secondary
        font.pixelSize: Theme.caption
        maximumLineCount: 1
        text: root.kind + " · " + root.origin
    }

    Label {
        id: sizeLabel

        anchors.right: reveal.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.red
        text: root.sizeText
    }

    PlainButton {
        id: reveal

        Accessible.description: root.name
        anchors.right: parent.right
        anchors.rightMargin: -4
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        text: "Mostrar en Finder"

        onClicked: root.revealed(root.index)

        HoverTip {
            text: reveal.text
            visible: reveal.hovered
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        anchors.left: kindIcon.left
        anchors.right: parent.right
        opacity: root.current ? 0 : 1
    }
}
