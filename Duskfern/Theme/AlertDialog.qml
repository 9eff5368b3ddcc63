pragma ComponentBehavior: Bound

import QtQuick

/// A modal question or message over the window. The first button is the default one; Esc means the last. One is made
/// for each message.
ModalDialog {
    id: root

    property string symbol: "exclamationmark.triangle.fill"
    property color symbolColor: Theme.orange

    /// The titles of one or two buttons.
    required property list<string> buttons

    /// Whether it has been answered.
    property bool isOver: false

    /// Which button ended it: 0 for the first. Given once.
    signal answered(int button)

    /// The first answer counts: a second press while the dialog goes away does not.
    function answer(button: int) {
        if (!root.isOver) {
            root.isOver = true;
            root.answered(button);
        }
    }

    Keys.onEscapePressed: event => {
        // A key that is held down does not end the next message unread.
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
