import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// The title of the folder dialog, the buttons back and up, and the path, with the error of a typed one.
Item {
    id: root

    required property FolderBrowser browser
    readonly property alias title: heading.text

    /// Gives the focus to the path field.
    function typePath() {
        field.begin();
    }

    implicitHeight: row.y + row.height + (problem.visible ? problem.implicitHeight + 8 : 0) + 14

    Label {
        id: heading

        anchors.left: parent.left
        anchors.leftMargin: 18
        font.bold: true
        font.pixelSize: Theme.title3
        text: "Elegir carpeta"
        y: 16
    }

    Item {
        id: row

        height: Math.max(back.height, field.height)
        width: parent.width
        y: heading.y + heading.height + 12

        SymbolButton {
            id: back

            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            enabled: root.browser.canGoBack
            symbol: "chevron.left"
            text: "Atrás"

            onClicked: root.browser.goBack()
        }

        SymbolButton {
            id: up

            anchors.left: back.right
            anchors.leftMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            enabled: root.browser.canGoUp
            symbol: "arrow.up"
            text: "Carpeta superior"

            onClicked: root.browser.goUp()
        }

        PathField {
            id: field

            anchors.left: up.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            browser: root.browser
        }
    }

    Label {
        id: problem

        Accessible.role: Accessible.AlertMessage
        anchors.left: row.left
        anchors.leftMargin: field.x
        anchors.right: row.right
        anchors.rightMargin: 16
        anchors.top: row.bottom
        anchors.topMargin: 8
        font.pixelSize: Theme.callout
        text: root.browser.typedError
        visible: text !== ""
        wrapMode: Text.Wrap
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
