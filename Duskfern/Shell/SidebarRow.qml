import QtQuick
import Duskfern.Theme

/// A button of the sidebar. The whole row is clickable.
Pressable {
    id: root

    required property string symbol
    required property color highlight
    required property bool current

    Accessible.checkable: true
    Accessible.checked: root.current
    Accessible.selectable: true
    Accessible.selected: root.current
    horizontalPadding: 10
    implicitHeight: Math.ceil(contentItem.implicitHeight) + topPadding + bottomPadding
    verticalPadding: 8

    background: Rectangle {
        color: root.current ? root.highlight : Theme.tint(Theme.primary, root.down ? 0.1 : root.hovered ? 0.05 : 0)
        radius: 8

        FocusRing {
            cornerRadius: 8
            inset: 0
            shown: root.activeFocus
        }
    }
    contentItem: Item { // qmllint disable deferred-property-id
        implicitHeight: title.implicitHeight

        Symbol {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
        }

        Label {
            id: title

            Accessible.ignored: true
            anchors.left: icon.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
        }
    }
}
