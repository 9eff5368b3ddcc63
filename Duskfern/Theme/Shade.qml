import QtQuick

/// Darkens all that lies below and keeps the pointer from it.
Rectangle {
    anchors.fill: parent
    color: Theme.shade

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true

        onWheel: event => event.accepted = true
    }
}
