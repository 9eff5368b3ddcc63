import QtQuick
import Duskfern.Theme

/// A row of a list in the sidebar. The whole row is clickable.
Item {
    id: root

    required property int index
    required property string text
    required property string symbol
    required property color highlight
    required property bool chosen

    /// Whether the keyboard acts on this row.
    property bool focused: false

    signal clicked

    Accessible.checkable: true
    Accessible.checked: root.chosen
    Accessible.focusable: true
    Accessible.focused: root.focused
    Accessible.name: root.text
    Accessible.role: Accessible.PageTab
    Accessible.selectable: true
    Accessible.selected: root.chosen

    Accessible.onPressAction: {
        if (root.enabled) {
            root.clicked();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: root.chosen ? root.highlight : Theme.tint(Theme.primary, pointer.pressed ? 0.1 : pointer.containsMouse ? 0.05 : 0)
        radius: 8
    }

    Symbol {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        name: root.symbol
    }

    Label {
        Accessible.ignored: true
        anchors.left: icon.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
    }

    FocusRing {
        cornerRadius: 8
        inset: 0
        shown: root.focused
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onClicked: root.clicked()
    }
}
