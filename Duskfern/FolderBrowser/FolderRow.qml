import QtQuick
import Duskfern.Theme

/// A row of the folder list.
ListRow {
    id: root

    required property string name
    required property bool isLink

    function hint(): string {
        return title.truncated ? root.name : "";
    }

    Accessible.description: root.isLink ? "Enlace a una carpeta" : ""
    opensWhenChosen: true
    rightInset: 12
    spoken: root.name

    Symbol {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.blue
        name: "folder.fill"
        size: Theme.body * 1.3
    }

    Label {
        id: title

        Accessible.ignored: true
        anchors.left: icon.right
        anchors.leftMargin: 10
        anchors.right: link.visible ? link.left : parent.right
        anchors.rightMargin: link.visible ? 8 : 24
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        maximumLineCount: 1
        text: root.name
    }

    Symbol {
        id: link

        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        name: "arrow.up.right"
        size: Theme.caption2
        visible: root.isLink
    }
}
