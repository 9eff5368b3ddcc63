import QtQuick

/// Darkens everything below and blocks the pointer.
Rectangle {
    anchors.fill: parent
    color: Theme.shade

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true

        onWheel: event => event.accepted = true
    }
}
