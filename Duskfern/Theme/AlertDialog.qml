pragma ComponentBehavior: Bound

import QtQuick

/// A modal question or message. The first button is the default one; Esc presses the last. An instance is used for one
/// message only.
ModalDialog {
    id: root

    property string symbol: "exclamationmark.triangle.fill"
    property color symbolColor: Theme.orange

    /// Titles of one or two buttons.
    required property list<string> buttons

    /// Whether it was answered.
    property bool isOver: false

    /// Emitted once with the index of the pressed button.
    signal answered(int button)

    /// Ignores all but the first answer, for instance a second press before the dialog is destroyed.
    function answer(button: int) {
        if (!root.isOver) {
            root.isOver = true;
            root.answered(button);
        }
    }

    Keys.onEscapePressed: event => {
        // A key held down must not close the next message before it is read.
        if (!event.isAutoRepeat) {
            root.answer(root.buttons.length - 1);
        }
    }

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        color: root.symbolColor
        name: root.symbol
        size: 44
    }

    Label {
        elide: Text.ElideNone
        font.bold: true
        font.pixelSize: Theme.headline
        horizontalAlignment: Text.AlignHCenter
        text: root.message
        topPadding: 4
        width: parent.width
        wrapMode: Text.Wrap

        HoverHandler {
            id: pointer

            onHoveredChanged: {
                if (pointer.hovered) {
                    Hints.show(parent, root.wholeName);
                } else {
                    Hints.hide(parent);
                }
            }
        }
    }

    Label {
        color: Theme.secondary
        elide: Text.ElideNone
        font.pixelSize: Theme.callout
        horizontalAlignment: Text.AlignHCenter
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
        model: root.buttons

        PushButton {
            required property int index
            required property string modelData

            focus: index === 0
            kind: index === 0 ? PushButton.Prominent : PushButton.Plain
            text: modelData
            verticalPadding: 8
            width: parent.width

            onClicked: root.answer(index)
        }
    }
}
