import QtQuick

/// A progress bar, or a busy indicator if the progress is unknown.
Rectangle {
    id: root

    /// From 0 to 1; negative if unknown.
    property real value: -1
    property color tint: Theme.red

    readonly property bool indeterminate: root.value < 0

    Accessible.role: Accessible.ProgressBar
    clip: true
    color: Theme.tint(Theme.primary, 0.08)
    implicitHeight: 6
    radius: height / 2

    Rectangle {
        id: bar

        color: root.tint
        height: parent.height
        radius: height / 2
        width: root.indeterminate ? root.width * 0.28 : root.width * Math.min(1, root.value)

        XAnimator on x {
            duration: 1400
            easing.type: Easing.InOutSine
            from: 0
            loops: Animation.Infinite
            running: root.indeterminate && root.visible
            to: root.width - bar.width
        }
    }
}
