import QtQuick

/// A button with a symbol instead of a title.
Pressable {
    id: root

    required property string symbol

    implicitHeight: Theme.body + 20
    implicitWidth: implicitHeight
    opacity: root.enabled ? 1 : 0.4

    background: Rectangle {
        border.color: Theme.outline(0.1)
        border.width: 1
        color: Theme.tint(Theme.primary, root.down ? 0.14 : root.hovered ? 0.1 : 0.06)
        radius: 8

        FocusRing {
            cornerRadius: 11
            shown: root.activeFocus
        }
    }
    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
        }
    }

    HoverTip {
        text: root.text
        visible: root.hovered
    }
}
