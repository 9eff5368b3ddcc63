import QtQuick
import QtQuick.Templates as T

/// A symbol to press, without a frame of its own.
T.AbstractButton {
    id: root

    property string symbol: ""
    property color tint: Theme.secondary
    property real symbolSize: Theme.body * 1.2

    /// What a screen reader says when that is not a button.
    property int role: Accessible.Button

    /// What a click does, for keys and assistive technologies.
    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    Accessible.name: root.text
    Accessible.role: root.role
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    implicitHeight: root.symbolSize + 12
    implicitWidth: root.symbolSize + 12

    Accessible.onPressAction: root.press()
    Accessible.onToggleAction: root.press()

    background: Rectangle {
        color: Theme.tint(Theme.primary, root.down ? 0.12 : root.hovered ? 0.06 : 0)
        radius: 6
    }
    contentItem: Item { // qmllint disable deferred-property-id
        Symbol {
            anchors.centerIn: parent
            color: root.tint
            name: root.symbol
            size: root.symbolSize
        }
    }
}
