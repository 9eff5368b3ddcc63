import QtQuick

/// The title of a card, a line below it and perhaps a badge, above a divider.
Item {
    id: root

    required property string title
    required property string subtitle
    property string badge: ""

    implicitHeight: texts.height + 2 * texts.y + divider.height

    Column {
        id: texts

        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.right: capsule.visible ? capsule.left : parent.right
        anchors.rightMargin: 14
        spacing: 2
        y: Theme.inset(14)

        Label {
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
            text: root.title
            width: parent.width
        }

        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: root.subtitle
            visible: !Theme.compact
            width: parent.width
        }
    }

    Rectangle {
        id: capsule

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: texts.verticalCenter
        color: Theme.tint(Theme.primary, 0.08)
        height: label.implicitHeight + 8
        radius: height / 2
        visible: root.badge !== ""
        width: label.implicitWidth + 18

        Label {
            id: label

            anchors.centerIn: parent
            font.pixelSize: Theme.caption
            text: root.badge
        }
    }

    Divider {
        id: divider

        anchors.bottom: parent.bottom
        width: parent.width
    }
}
