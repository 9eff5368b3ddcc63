import QtQuick

/// A symbol on a rounded tile in a paler shade of its colour.
Rectangle {
    id: root

    required property string symbol
    required property color tint
    required property real side
    property real symbolSize: Theme.title2
    property real fillOpacity: 0.14

    color: Theme.tint(root.tint, root.fillOpacity)
    implicitHeight: root.side
    implicitWidth: root.side

    Symbol {
        anchors.centerIn: parent
        color: root.tint
        name: root.symbol
        size: root.symbolSize
    }
}
