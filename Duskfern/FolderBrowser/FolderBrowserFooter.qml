import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// The folder that would be chosen, and the buttons of the folder dialog.
Item {
    id: root

    required property FolderBrowser browser

    implicitHeight: choose.height + 28

    Divider {
        width: parent.width
    }

    NameLabel {
        anchors.left: parent.left
        anchors.leftMargin: 18
        anchors.right: cancel.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        font.pixelSize: Theme.callout
        text: root.browser.choice === "" ? "" : "Se elegirá “" + root.browser.choice + "”"
    }

    PushButton {
        id: cancel

        anchors.right: choose.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        text: "Cancelar"
        verticalPadding: 8
        width: Math.max(implicitWidth, 100)

        onClicked: root.browser.cancel()
    }

    PushButton {
        id: choose

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        available: root.browser.choice !== ""
        kind: PushButton.Prominent
        text: root.browser.prompt
        verticalPadding: 8
        width: Math.max(implicitWidth, 100)

        onClicked: root.browser.accept()
    }
}
