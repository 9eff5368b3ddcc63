import QtQuick
import Duskfern.Theme

/// A number with its title and symbol.
Rectangle {
    id: root

    required property string title
    required property string value
    required property string icon

    border.color: Theme.tint(Theme.red, 0.15)
    border.width: 1
    color: Theme.tint(Theme.red, 0.07)
    implicitHeight: texts.height + 28
    radius: 12

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
