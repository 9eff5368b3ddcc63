import QtQuick
import Duskfern.Theme

/// A number with its title and symbol.
Card {
    id: root

    required property string title
    required property string value
    required property string icon

    fillOpacity: 0.07
    implicitHeight: texts.height + 2 * Theme.inset(14)
    radius: 12
    strokeOpacity: 0.15
    tone: Theme.red

    Symbol {
        id: symbol

        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.red
        name: root.icon
        size: Theme.title3 * 1.1
    }

    MetricTexts {
        id: texts

        anchors.left: symbol.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        label: root.title
        value: root.value
    }
}
