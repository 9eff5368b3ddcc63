import QtQuick

/// A ring around its parent that shows the keyboard focus. Visible only while the keyboard is in use.
Rectangle {
    id: root

    property bool shown: false

    /// Visible also while the pointer is in use.
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
