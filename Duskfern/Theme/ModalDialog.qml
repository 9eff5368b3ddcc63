import QtQuick

/// A card above the shaded window that has the keyboard focus: one of its items must set `focus: true`. Everything
/// below it must be disabled meanwhile.
FocusScope {
    id: root

    required property string message

    /// Explanation below the message.
    property string informativeText: ""

    /// The whole of a name that is shortened in the message; empty if none is.
    property string wholeName: ""

    /// The contents of the card, in a column.
    default property alias content: column.data

    anchors.fill: parent
    focus: true

    Shade {}

    Rectangle {
        Accessible.description: (root.wholeName === "" ? "" : root.wholeName + " ") + root.informativeText
        Accessible.name: root.message
        Accessible.role: Accessible.Dialog
        anchors.centerIn: parent
        border.color: Theme.outline(0.12)
        color: Theme.raised
        height: column.height + 40
        radius: 14
        // Wide enough for large fonts.
        width: Math.min(root.width - 40, Math.max(360, 24 * Theme.body))

        Column {
            id: column

            anchors.centerIn: parent
            spacing: 10
            width: parent.width - 40
        }
    }
}
