import QtQuick

/// The title of a screen, a line below it and its buttons, above a divider.
Item {
    id: root

    required property string title
    required property string subtitle

    /// Whether the line below the title is a path, which is shortened where another text wraps.
    property bool isPath: false

    default property alias buttons: row.data

    implicitHeight: Math.max(titles.height, row.height) + 2 * Theme.inset(16) + divider.height

    Column {
        id: titles

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: row.left
        anchors.rightMargin: 16
        anchors.verticalCenter: row.verticalCenter
        spacing: 3

        Label {
            font.bold: true
            font.pixelSize: Theme.title2
            text: root.title
            width: parent.width
        }

        NameLabel {
            color: Theme.secondary
            elide: root.isPath ? Text.ElideMiddle : Text.ElideRight
            font.pixelSize: Theme.caption
            maximumLineCount: root.isPath ? 1 : 2
            text: root.subtitle
            width: parent.width
            wrapMode: root.isPath ? Text.NoWrap : Text.Wrap
        }
    }

    Row {
        id: row

        anchors.right: parent.right
        anchors.rightMargin: 16
        spacing: 8
        y: (root.height - divider.height - height) / 2
    }

    Divider {
        id: divider

        anchors.bottom: parent.bottom
        width: parent.width
    }
}
