import QtQuick

/// A symbol of the program by name, in a colour. Decorative: the text beside it has the meaning.
Image {
    id: root

    required property string name
    property color color: Theme.primary
    property real size: Theme.body * 1.15

    Accessible.ignored: true
    height: root.size
    source: root.name === "" ? "" : "image://symbol/" + root.name + "/" + String(root.color).slice(1)
    sourceSize.height: Math.round(root.size)
    sourceSize.width: Math.round(root.size)
    width: root.size
}
