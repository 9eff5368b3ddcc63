import QtQuick

/// Shows the progress of work that blocks the window.
ModalDialog {
    id: root

    /// Units of work done and in total.
    required property int done
    required property int total

    /// How much of the current unit is done, in percent; negative if that is not known.
    property int percent: -1

    Label {
        elide: Text.ElideNone
        font.bold: true
        font.pixelSize: Theme.headline
        text: root.message
        width: parent.width
        wrapMode: Text.Wrap
    }

    // Has the focus only to let screen readers report the progress.
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
        text: root.done + " de " + root.total + (root.percent < 0 ? "" : " · " + root.percent + "%")
        width: parent.width
    }
}
