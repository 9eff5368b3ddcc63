import QtQuick
import Duskfern.Theme

/// A row of the file list.
ListRow {
    id: root

    required property string number
    required property string name
    required property string folder
    required property string sizeText
    required property string icon

    function hint(): string {
        return nameLabel.truncated || folderLabel.truncated ? root.name + "\n" + root.folder : "";
    }

    Accessible.description: root.folder
    spoken: root.name + ", " + root.sizeText

    Label {
        id: numberLabel

        Accessible.ignored: true
        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        elide: Text.ElideNone
        font.pixelSize: Theme.caption2
        horizontalAlignment: Text.AlignHCenter
        text: root.number
        width: 24 * Theme.growth
    }

    IconTile {
        id: tile

        anchors.left: numberLabel.right
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        fillOpacity: 0.12
        radius: 7
        side: 28
        symbol: root.icon
        symbolSize: Theme.body * 1.1
        tint: Theme.teal
        visible: !Theme.compact
    }

    Label {
        id: nameLabel

        Accessible.ignored: true
        anchors.bottom: parent.verticalCenter
        anchors.left: tile.visible ? tile.right : numberLabel.right
        anchors.leftMargin: 10
        anchors.right: sizeLabel.left
        anchors.rightMargin: 10
        elide: Text.ElideMiddle
        maximumLineCount: 1
        text: root.name
    }

    Label {
        id: folderLabel

        Accessible.ignored: true
        anchors.left: nameLabel.left
        anchors.right: nameLabel.right
        anchors.top: parent.verticalCenter
        anchors.topMargin: Theme.inset(2)
        color: Theme.secondary
        elide: Text.ElideMiddle
        font.pixelSize: Theme.caption2
        maximumLineCount: 1
        text: root.folder
    }

    Label {
        id: sizeLabel

        Accessible.ignored: true
        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.tealText
        font.pixelSize: Theme.caption
        text: root.sizeText
    }
}
