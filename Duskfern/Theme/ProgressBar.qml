import QtQuick

/// A progress bar, or a busy indicator if the progress is unknown.
Rectangle {
    id: root

    /// From 0 to 1; negative if unknown.
    property real value: -1
    property color tint: Theme.red

    readonly property bool indeterminate: root.value < 0

    /// How far the indicator has moved, from 0 to 1. It rests in the middle.
    readonly property real way: steps.running ? (1 - Math.cos(Math.PI * steps.done / steps.count)) / 2 : 0.5

    Accessible.role: Accessible.ProgressBar
    color: Theme.tint(Theme.primary, 0.08)
    implicitHeight: 6
    radius: height / 2

    // Moves in steps, because each frame takes time where no graphics card draws it.
    Timer {
        id: steps

        readonly property int count: 35
        property int done: 0

        interval: 40
        repeat: true
        running: root.indeterminate && root.visible && !Theme.still

        onTriggered: steps.done = (steps.done + 1) % steps.count
    }

    Rectangle {
        color: root.tint
        height: parent.height
        radius: height / 2
        width: root.indeterminate ? root.width * 0.28 : root.width * Math.min(1, root.value)
        x: root.indeterminate ? root.way * (root.width - width) : 0
    }
}
