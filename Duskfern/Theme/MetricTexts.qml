import QtQuick

/// A number below its name in small capitals.
Column {
    id: root

    required property string label
    required property string value

    spacing: 3

    Label {
        color: Theme.secondary
        font.bold: true
        font.letterSpacing: 0.3
        font.pixelSize: Theme.fixed9
        text: root.label
        width: parent.width
    }

    Label {
        font.bold: true
        font.pixelSize: Theme.title3
        text: root.value
        width: parent.width
    }
}
