import QtQuick

/// A ring around its parent that shows the keyboard focus. Visible only while the keyboard is in use.
Rectangle {
    id: root

    property bool shown: false

    /// Visible also while the pointer is in use.
    property bool always: false
    property real inset: -3
    property real cornerRadius: 9

    /// Whether its parent may have any colour: a second ring inside the first then stands out from one of the two.
    property bool overPicture: false

    anchors.fill: parent
    anchors.margins: root.inset
    border.color: Theme.focus
    border.width: 3
    color: "transparent"
    radius: root.cornerRadius
    visible: root.shown && (root.always || Theme.keyboard)

    Rectangle {
        anchors.fill: parent
        anchors.margins: 3
        border.color: Theme.window
        border.width: 2
        color: "transparent"
        radius: root.radius - 3
        visible: root.overPicture
    }
}
