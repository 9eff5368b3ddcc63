pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/// A modal question or message over the window. The first button is the default one; Esc means the last.
T.Popup {
    id: root

    required property string message
    property string informativeText: ""
    property string symbol: "exclamationmark.triangle.fill"
    property color symbolColor: Theme.orange

    /// The titles of one or two buttons.
    required property list<string> buttons

    /// Which button ended it: 0 for the first. Given once each time the dialog was shown.
    signal answered(int button)

    /// The first answer counts: a second press while the dialog goes away does not.
    function answer(button: int) {
        if (root.opened) {
            root.close();
            root.answered(button);
        }
    }

    anchors.centerIn: T.Overlay.overlay
    closePolicy: T.Popup.NoAutoClose
    focus: true
    implicitHeight: contentItem.implicitHeight + 2 * padding
    implicitWidth: 360
    modal: true
    padding: 20

    // The focus of the last time is not that of this time.
    onOpened: choices.itemAt(0).forceActiveFocus()

    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
    background: Rectangle {
        border.color: Theme.tint(Theme.primary, 0.12)
        color: Theme.raised
        radius: 14
    }
    contentItem: FocusScope { // qmllint disable deferred-property-id
        Accessible.description: root.informativeText
        Accessible.name: root.message
        Accessible.role: Accessible.Dialog
        focus: true
        implicitHeight: column.implicitHeight

        Keys.onEscapePressed: root.answer(root.buttons.length - 1)

        Column {
            id: column

            spacing: 10
            width: parent.width

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                color: root.symbolColor
                name: root.symbol
                size: 44
            }

            Label {
                font.bold: true
                font.pixelSize: Theme.headline
                horizontalAlignment: Text.AlignHCenter
                maximumLineCount: 6
                text: root.message
                topPadding: 4
                width: parent.width
                wrapMode: Text.Wrap
            }

            Label {
                color: Theme.secondary
                font.pixelSize: Theme.callout
                horizontalAlignment: Text.AlignHCenter
                maximumLineCount: 8
                text: root.informativeText
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
            }

            Item {
                height: 2
                width: 1
            }

            Repeater {
                id: choices

                model: root.buttons

                PushButton {
                    required property int index
                    required property string modelData

                    kind: index === 0 ? PushButton.Prominent : PushButton.Plain
                    text: modelData
                    verticalPadding: 8
                    width: parent.width

                    onClicked: root.answer(index)
                }
            }
        }
    }
}
