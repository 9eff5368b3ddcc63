import QtQuick
import QtQuick.Templates as T

/// A thin scroll bar at the right edge of a view, shown only if the view scrolls.
T.ScrollBar {
    id: root

    required property Flickable view

    Accessible.name: "Desplazamiento"
    active: root.view.moving || root.hovered || root.pressed
    anchors.bottom: parent?.bottom
    anchors.right: parent?.right
    anchors.top: parent?.top
    hoverEnabled: true
    implicitWidth: 10
    minimumSize: 0.06
    orientation: Qt.Vertical
    padding: 2
    parent: root.view
    position: root.view.visibleArea.yPosition
    size: root.view.visibleArea.heightRatio
    visible: root.size < 1

    contentItem: Rectangle {
        color: Theme.tint(Theme.primary, root.pressed ? 0.5 : root.active ? 0.35 : 0.18)
        implicitWidth: 6
        radius: 3
    }

    onPositionChanged: {
        if (root.pressed) {
            root.view.contentY = root.position * root.view.contentHeight + root.view.originY;
        }
    }
}
