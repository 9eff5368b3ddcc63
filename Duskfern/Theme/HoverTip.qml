import QtQuick
import QtQuick.Templates as T

/// A tooltip.
T.ToolTip {
    id: root

    delay: 600
    horizontalPadding: 9
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    implicitWidth: Math.min(520, contentItem.implicitWidth + leftPadding + rightPadding)
    margins: 8
    verticalPadding: 6
    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: parent ? parent.height + 4 : 0

    background: Rectangle {
        border.color: Theme.divider
        color: Theme.raised
        radius: 6
    }
    contentItem: Label {
        Accessible.ignored: true
        font.pixelSize: Theme.caption
        text: root.text
        wrapMode: Text.WrapAnywhere
    }
}
