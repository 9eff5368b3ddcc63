import QtQuick

/// A panel with a pale fill and a thin outline over everything in it.
Rectangle {
    id: root

    property color tone: Theme.primary
    property real fillOpacity: 0.045
    property real strokeOpacity: 0.08

    color: Theme.tint(root.tone, root.fillOpacity)

    Rectangle {
        anchors.fill: parent
        border.color: Theme.strong ? Theme.outline(root.strokeOpacity) : Theme.tint(root.tone, root.strokeOpacity)
        border.width: 1
        color: "transparent"
        radius: root.radius
        z: 1
    }
}
