import QtQuick

/// A flat button with a symbol that is not a Tab stop. Not based on Qt's buttons, because their accessible role cannot
/// be changed.
Item {
    id: root

    /// Name for assistive technologies.
    required property string text
    required property string symbol
    property color tint: Theme.secondary
    property real symbolSize: Theme.body * 1.2

    readonly property bool hovered: pointer.containsMouse

    signal clicked

    /// Called for a click by assistive technologies.
    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    Accessible.name: root.text
    Accessible.role: Accessible.Button
    implicitHeight: root.symbolSize + 12
    implicitWidth: root.symbolSize + 12

    Accessible.onPressAction: root.press()
    Accessible.onToggleAction: root.press()

    Rectangle {
        anchors.fill: parent
        color: Theme.tint(Theme.primary, pointer.pressed ? 0.12 : root.hovered ? 0.06 : 0)
        radius: 6
    }

    Symbol {
        anchors.centerIn: parent
        color: root.tint
        name: root.symbol
        size: root.symbolSize
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onClicked: root.clicked()
    }
}
