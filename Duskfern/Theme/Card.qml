import QtQuick

/// A panel with a pale fill and a thin border.
Rectangle {
    id: root

    property real fillOpacity: 0.045
    property real strokeOpacity: 0.08

    border.color: Theme.tint(Theme.primary, root.strokeOpacity)
    border.width: 1
    color: Theme.tint(Theme.primary, root.fillOpacity)
}
