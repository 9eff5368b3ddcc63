import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// The program's own folder dialog, above the shaded window. Holds the keyboard focus while open.
FocusScope {
    id: root

    required property FolderBrowser browser

    anchors.fill: parent
    focus: true

    Keys.onEscapePressed: root.browser.cancel()
    Keys.onPressed: event => {
        if (event.modifiers === Qt.AltModifier && event.key === Qt.Key_Up) {
            root.browser.goUp();
        } else if (event.modifiers === Qt.AltModifier && event.key === Qt.Key_Left) {
            root.browser.goBack();
        } else if (event.modifiers === Qt.ControlModifier && event.key === Qt.Key_L) {
            field.begin();
        } else {
            return;
        }
        event.accepted = true;
    }

    Shade {}

    Rectangle {
        Accessible.name: title.text
        Accessible.role: Accessible.Dialog
        anchors.centerIn: parent
        border.color: Theme.tint(Theme.primary, 0.12)
        color: Theme.raised
        height: Math.min(root.height - 48, 34 * Theme.body + 170)
        radius: 14
        width: Math.min(root.width - 48, 46 * Theme.body + 240)

        // The order of these items is the Tab order.
        FolderList {
            id: list

            anchors.bottom: footer.top
            anchors.left: places.right
            anchors.right: parent.right
            anchors.top: header.bottom
            browser: root.browser
            focus: true
        }

        Item {
            id: footer

            anchors.bottom: parent.bottom
            height: choose.height + 28
            width: parent.width

            Divider {
                width: parent.width
            }

            Label {
                anchors.left: parent.left
                anchors.leftMargin: 18
                anchors.right: cancel.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.secondary
                elide: Text.ElideMiddle
                font.pixelSize: Theme.callout
                maximumLineCount: 1
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

        Item {
            id: header

            height: row.y + row.height + (problem.visible ? problem.implicitHeight + 8 : 0) + 14
            width: parent.width

            Label {
                id: title

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
                y: title.y + title.height + 12

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

        PlaceList {
            id: places

            anchors.bottom: footer.top
            anchors.top: header.bottom
            browser: root.browser
            width: Math.min(parent.width * 0.34, 7 * Theme.body + 110)
        }
    }

    Connections {
        function onNavigated() {
            list.forceActiveFocus();
        }

        target: root.browser
    }
}
