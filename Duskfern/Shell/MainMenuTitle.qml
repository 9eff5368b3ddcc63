import QtQuick
import Duskfern.Theme

/// The title of a menu in the menu bar. Not based on Qt's buttons, because their accessible role cannot be changed.
Item {
    id: root

    required property string text

    /// Whether the menu is open.
    required property bool open

    signal clicked

    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    Accessible.focusable: true
    Accessible.name: root.text
    Accessible.role: Accessible.MenuItem
    activeFocusOnTab: true
    implicitHeight: Math.ceil(label.implicitHeight) + 8
    implicitWidth: label.implicitWidth + 20

    Accessible.onPressAction: root.press()
    Keys.onDownPressed: root.press()
    Keys.onEnterPressed: root.press()
    Keys.onReturnPressed: root.press()
    Keys.onSpacePressed: root.press()

    Rectangle {
        anchors.fill: parent
        color: Theme.tint(Theme.primary, root.open || pointer.pressed ? 0.12 : pointer.containsMouse ? 0.07 : 0)
        radius: 5

        FocusRing {
            cornerRadius: 6
            inset: -1
            shown: root.activeFocus
        }
    }

    Label {
        id: label

        Accessible.ignored: true
        anchors.centerIn: parent
        font.pixelSize: Theme.callout
        text: root.text
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onClicked: root.press()
    }
}
