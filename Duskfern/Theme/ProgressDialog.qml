import QtQuick

/// Says how far a work is during which nothing else can be done.
ModalDialog {
    id: root

    /// What is done, and of how much.
    required property int done
    required property int total

    Label {
        elide: Text.ElideNone
        font.bold: true
        font.pixelSize: Theme.headline
        text: root.message
        width: parent.width
        wrapMode: Text.Wrap
    }

    // Needs no key, but has the keyboard, so that how far it is can be read aloud.
    ProgressBar {
        Accessible.description: root.message
        Accessible.focusable: true
        Accessible.focused: activeFocus
        Accessible.name: count.text
        focus: true
        value: root.total > 0 ? root.done / root.total : 0
        width: parent.width
    }

    Label {
        id: count

        color: Theme.secondary
        font.pixelSize: Theme.caption
        text: root.done + " de " + root.total
        width: parent.width
    }
}
