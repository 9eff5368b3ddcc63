import QtQuick
import QtQuick.Templates as T

/// A button with a symbol instead of a title.
T.AbstractButton {
    id: root

    required property string symbol

    /// Called for a click, for keys and by assistive technologies.
    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    Accessible.name: root.text
    Accessible.role: Accessible.Button
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    implicitHeight: Theme.body + 20
    implicitWidth: implicitHeight
    opacity: root.enabled ? 1 : 0.4

    Accessible.onPressAction: root.press()
    Keys.onEnterPressed: root.press()
    Keys.onReturnPressed: root.press()

    background: Rectangle {
        border.color: Theme.tint(Theme.primary, 0.1)
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
