import QtQuick
import Duskfern.Engine
import Duskfern.SpaceMap
import Duskfern.Theme

/// The selected file and the actions for it.
Item {
    id: root

    required property ScanStore store

    implicitHeight: Math.max(actions.implicitHeight, placeholder.implicitHeight) + 2 * Theme.inset(12)

    Label {
        id: placeholder

        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        font.pixelSize: Theme.caption
        text: "Selecciona un archivo"
        visible: !root.store.hasSelection
    }

    NameLabel {
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: root.store.isMoving ? moving.left : actions.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: Theme.caption
        text: root.store.selectedName
        visible: root.store.hasSelection
    }

    Label {
        id: moving

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        font.pixelSize: Theme.caption
        text: StatusTexts.moving(root.store.movingPercent)
        visible: root.store.isMoving
        // Leaves room for the name with large fonts.
        width: Math.min(implicitWidth, parent.width * 0.7)
    }

    Row {
        id: actions

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        visible: root.store.hasSelection && !root.store.isMoving

        PushButton {
            font.pixelSize: Theme.caption
            text: "Mostrar"

            onClicked: root.store.revealSelected()
        }

        PushButton {
            font.pixelSize: Theme.caption
            text: "A la papelera"
            titleColor: Theme.redText

            onClicked: root.store.moveSelectedToTrash()
        }
    }
}
