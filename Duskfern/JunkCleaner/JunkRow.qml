import QtQuick
import Duskfern.Theme

/// A junk item. Emits signals only; opening a row shows it in the file manager.
ListRow {
    id: root

    required property string name
    required property string kind
    required property string origin
    required property string folder
    required property string icon
    required property string sizeText
    required property bool safe
    required property bool ticked

    signal toggled(row: int)

    function hint(): string {
        return (nameLabel.truncated || detail.truncated ? root.name + "\n" + detail.text + "\n" : "") + root.folder;
    }

    Accessible.checkable: true
    Accessible.checked: root.ticked
    Accessible.description: detail.text + ", " + root.folder
    chosenColor: "transparent"
    leftInset: -6
    rightInset: -6
    spoken: root.name + ", " + root.sizeText

    Accessible.onToggleAction: root.toggled(root.index)

    PlainButton {
        id: box

        Accessible.checkable: true
        Accessible.checked: root.ticked
        Accessible.role: Accessible.CheckBox
        anchors.left: parent.left
        anchors.leftMargin: -4
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.ticked ? "checkmark.square.fill" : "square"
        text: root.name
        tint: root.ticked ? Theme.redMark : Theme.secondary

        onClicked: root.toggled(root.index)
    }

    Item {
        id: kindIcon

        anchors.left: box.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        height: 28
        width: 28

        Symbol {
            anchors.centerIn: parent
            color: root.safe ? Theme.orange : Theme.red
            name: root.icon
            size: Theme.body * 1.3
        }
    }

    Label {
        id: nameLabel

        Accessible.ignored: true
        anchors.bottom: parent.verticalCenter
        anchors.bottomMargin: 1
        anchors.left: kindIcon.right
        anchors.leftMargin: 12
        anchors.right: sizeLabel.left
        anchors.rightMargin: 12
        elide: Text.ElideMiddle
        maximumLineCount: 1
        text: root.name
    }

    Label {
        id: detail

        Accessible.ignored: true
        anchors.left: nameLabel.left
        anchors.right: nameLabel.right
        anchors.top: parent.verticalCenter
        anchors.topMargin: 1
        color: Theme.secondary
        elide: Text.ElideMiddle
        font.pixelSize: Theme.caption
        maximumLineCount: 1
        text: root.kind + " · " + root.origin
    }

    Label {
        id: sizeLabel

        Accessible.ignored: true
        anchors.right: reveal.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.redText
        text: root.sizeText
    }

    PlainButton {
        id: reveal

        Accessible.description: root.name
        anchors.right: parent.right
        anchors.rightMargin: -4
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        text: "Mostrar en Finder"

        onClicked: root.opened(root.index)

        HoverTip {
            text: reveal.text
            visible: reveal.hovered
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        anchors.left: kindIcon.left
        anchors.right: parent.right
        opacity: root.chosen ? 0 : 1
    }
}
