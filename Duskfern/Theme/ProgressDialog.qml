import QtQuick
import QtQuick.Templates as T

/// Says how far a work is during which nothing else can be done.
T.Popup {
    id: root

    required property string message

    /// What is done, and of how much.
    required property int done
    required property int total

    anchors.centerIn: T.Overlay.overlay
    closePolicy: T.Popup.NoAutoClose
    focus: true
    implicitHeight: contentItem.implicitHeight + 2 * padding
    implicitWidth: 360
    modal: true
    padding: 20

    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
    background: Rectangle {
        border.color: Theme.tint(Theme.primary, 0.12)
        color: Theme.raised
        radius: 14
    }
    contentItem: FocusScope { // qmllint disable deferred-property-id
        Accessible.name: root.message
        Accessible.role: Accessible.Dialog
        implicitHeight: column.implicitHeight

        Column {
            id: column

            spacing: 10
            width: parent.width

            Label {
                font.bold: true
                font.pixelSize: Theme.headline
                text: root.message
                width: parent.width
            }

            ProgressBar {
                Accessible.name: count.text
                value: root.total > 0 ? root.done / root.total : 0
                width: parent.width
            }

            Label {
                id: count

                color: Theme.secondary
                font.pixelSize: Theme.caption
                text: root.done + " de " + root.total
                width: parent.width
            }
        }
    }
}
