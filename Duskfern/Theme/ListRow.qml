import QtQuick
import Duskfern.Theme

/// A row of a list that reuses its rows. Shows the selection and emits signals only.
Item {
    id: root

    required property int index

    /// Name for assistive technologies.
    property string spoken: ""
    property bool chosen: false

    /// Whether the list has the focus.
    property bool focused: false

    /// Fill colour of the selected row.
    property color chosenColor: Theme.selection

    /// Whether pressing a selected row by assistive technology opens it; else it is selected again.
    property bool opensWhenChosen: false
    property real leftInset: 6
    property real rightInset: 6

    signal pressed(row: int)
    signal opened(row: int)

    /// What a hint shows while the pointer is on the row: what is shortened, as a whole. Empty if nothing is.
    function hint(): string {
        return "";
    }

    Accessible.focusable: true
    Accessible.focused: root.chosen && root.focused
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

    // A pooled row is hidden, because screen readers would read it. It is moved away, because a reused row is shown at
    // its old position first and could be under the pointer.
    ListView.onPooled: {
        root.visible = false;
        root.y = -1000000;
    }
    // Qt 6.8 sets pooled rows to ignored for screen readers and does not reset that.
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

        onContainsMouseChanged: {
            if (pointer.containsMouse) {
                Hints.show(root, root.hint());
            } else {
                Hints.hide(root);
            }
        }
        onDoubleClicked: root.opened(root.index)
        onPressed: root.pressed(root.index)
    }
}
