import QtQuick
import Duskfern.Theme

/// A number of the analysis with its title and symbol.
Card {
    id: root

    required property string icon
    required property color accent
    required property string label
    required property string value

    fillOpacity: 0.055
    implicitHeight: Math.max(tile.visible ? tile.height : 0, texts.height) + 2 * Theme.inset(13)
    radius: 12

    IconTile {
        id: tile

        anchors.left: parent.left
        anchors.leftMargin: 13
        anchors.verticalCenter: parent.verticalCenter
        radius: 10
        side: 42
        symbol: root.icon
        symbolSize: Theme.title2 * 1.15
        tint: root.accent
        visible: !Theme.compact
    }

    MetricTexts {
        id: texts

        anchors.left: tile.visible ? tile.right : parent.left
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 13
        anchors.verticalCenter: parent.verticalCenter
        label: root.label
        value: root.value
    }
}
