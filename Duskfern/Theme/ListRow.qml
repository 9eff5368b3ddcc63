import QtQuick
import Duskfern.Theme

/// A row of a list that uses its rows again. Shows whether it is chosen and only says that it was pressed.
Item {
    id: root

    required property int index

    /// What is read aloud as its name.
    property string spoken: ""
    property bool chosen: false

    /// Whether the list has the keyboard.
    property bool focused: false

    /// What it is filled with when it is chosen.
    property color chosenColor: Theme.selection

    /// Whether assistive technology opens the row that is chosen by pressing it; otherwise that chooses it once more.
    property bool opensWhenChosen: false
    property real leftInset: 6
    property real rightInset: 6

    signal pressed(row: int)
    signal opened(row: int)

    Accessible.name: root.spoken
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: root.chosen

    Accessible.onPressAction: {
        if (root.enabled && root.chosen && root.opensWhenChosen) {
            root.opened(root.index);
        } else if (root.enabled) {
            root.pressed(root.index);
        }
    }

    // A row that waits to be used again would be read aloud. When it is shown again it is first where it was, and must
    // not find the pointer there.
    ListView.onPooled: {
        root.visible = false;
        root.y = -1000000;
    }
    // Qt 6.8 hides a waiting row from screen readers by itself and never shows it to them again.
    ListView.onReused: {
        root.Accessible.ignored = false;
        root.visible = true;
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: root.leftInset
        anchors.rightMargin: root.rightInset
        border.color: Theme.focus
        border.width: root.chosen && root.focused ? 2 : 0
        color: root.chosen && root.chosenColor.a > 0 ? root.chosenColor : pointer.containsMouse ? Theme.tint(Theme.primary, pointer.pressed ? 0.09 : 0.045) : "transparent"
        radius: 8
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onDoubleClicked: root.opened(root.index)
        onPressed: root.pressed(root.index)
    }
}
