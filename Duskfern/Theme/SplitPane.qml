pragma ComponentBehavior: Bound

import QtQuick
import Duskfern.Theme

/// Two panes with a divider that can be dragged or moved with the arrow keys. If the width is less than both minima,
/// the panes shrink in proportion to them.
Item {
    id: root

    /// Name of the divider for assistive technologies.
    required property string dividerName
    required property real minimumFirst
    required property real minimumSecond
    property real maximumFirst: Infinity

    /// Width of the first pane until the user moves the divider.
    required property real idealFirst

    /// Width of the divider. Its line is drawn only if `hairline` is set.
    property real gap: 1
    property bool hairline: false
    property alias first: firstPane.data
    property alias second: secondPane.data

    /// Width of the first pane set by the user; negative if not set.
    property real chosenFirst: -1

    readonly property real room: Math.max(0, root.width - root.gap)
    readonly property real firstWidth: root.fitted(root.chosenFirst < 0 ? root.idealFirst : root.chosenFirst)

    function fitted(wanted: real): real {
        return PaneWidths.first(wanted, root.room, root.minimumFirst, root.maximumFirst, root.minimumSecond);
    }

    Item {
        id: firstPane

        height: parent.height
        width: root.firstWidth
    }

    Item {
        id: divider

        Accessible.focusable: true
        Accessible.name: root.dividerName
        Accessible.role: Accessible.Splitter
        activeFocusOnTab: true
        height: parent.height
        width: root.gap
        x: root.firstWidth
        // Read between the panes, but wider than its gap for the pointer.
        z: 1

        Keys.onLeftPressed: root.chosenFirst = root.fitted(root.firstWidth - 20)
        Keys.onRightPressed: root.chosenFirst = root.fitted(root.firstWidth + 20)

        Divider {
            anchors.fill: parent
            visible: root.hairline
        }

        Rectangle {
            anchors.centerIn: parent
            color: divider.activeFocus ? Theme.focus : Theme.tint(Theme.primary, 0.35)
            height: root.hairline ? parent.height : 36
            radius: 2
            visible: divider.activeFocus || drag.containsMouse || drag.pressed
            width: 4
        }

        MouseArea {
            id: drag

            property real grip: 0

            anchors.fill: parent
            anchors.margins: Math.min(0, (root.gap - 9) / 2)
            anchors.bottomMargin: 0
            anchors.topMargin: 0
            cursorShape: Qt.SplitHCursor
            hoverEnabled: true

            onPositionChanged: event => {
                if (drag.pressed) {
                    root.chosenFirst = root.fitted(drag.mapToItem(root, event.x, 0).x - drag.grip);
                }
            }
            onPressed: event => drag.grip = drag.mapToItem(root, event.x, 0).x - root.firstWidth
        }
    }

    Item {
        id: secondPane

        height: parent.height
        width: root.room - root.firstWidth
        x: root.firstWidth + root.gap
    }
}
