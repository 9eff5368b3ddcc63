import QtQuick

/// A card over the shaded window. It has the keyboard while it is there: one of its items says `focus: true`. Nothing
/// below it is to be enabled meanwhile.
FocusScope {
    id: root

    required property string message

    /// What explains the message.
    property string informativeText: ""

    /// What stands on the card, from top to bottom.
    default property alias content: column.data

    anchors.fill: parent
    focus: true

    Shade {}

    Rectangle {
        Accessible.description: root.informativeText
        Accessible.name: root.message
        Accessible.role: Accessible.Dialog
        anchors.centerIn: parent
        border.color: Theme.tint(Theme.primary, 0.12)
        color: Theme.raised
        height: column.height + 40
        radius: 14
        // Wide enough for large type, too.
        width: Math.min(root.width - 40, Math.max(360, 24 * Theme.body))

        Column {
            id: column

            anchors.centerIn: parent
            spacing: 10
            width: parent.width - 40
        }
    }
}
