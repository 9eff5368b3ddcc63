import QtQuick

/// A symbol to press, without a frame of its own and out of the way of the Tab key. Not made of Qt's buttons, whose role
/// cannot be chosen.
Item {
    id: root

    /// What it says to who cannot see it.
    required property string text
    required property string symbol
    property color tint: Theme.secondary
    property real symbolSize: Theme.body * 1.2

    readonly property bool hovered: pointer.containsMouse

    signal clicked

    /// What a click does, for assistive technologies.
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
