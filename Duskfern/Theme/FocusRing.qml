import QtQuick

/// Shows which control the keyboard acts on, while keys are used. Lies around its parent, outside of it.
Rectangle {
    id: root

    property bool shown: false

    /// Whether it is there after a click, too.
    property bool always: false
    property real inset: -3
    property real cornerRadius: 9

    anchors.fill: parent
    anchors.margins: root.inset
    border.color: Theme.focus
    border.width: 3
    color: "transparent"
    radius: root.cornerRadius
    visible: root.shown && (root.always || Theme.keyboard)
}
