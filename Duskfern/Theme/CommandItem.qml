import QtQuick
import QtQuick.Templates as T

/// A menu command with its key combination.
T.MenuItem {
    id: root

    property string keys: ""

    Accessible.name: root.text
    Accessible.role: Accessible.MenuItem
    font.family: Theme.family
    font.pixelSize: Theme.body
    horizontalPadding: 10
    hoverEnabled: true
    implicitHeight: Math.ceil(title.implicitHeight) + 12
    implicitWidth: title.implicitWidth + keysLabel.implicitWidth + 60
    verticalPadding: 0

    Accessible.onPressAction: {
        if (root.enabled) {
            root.menu.dismiss();
            root.triggered();
        }
    }

    // A key of the window can begin what disables the command under the focus: the menu closes and gives the focus back.
    onEnabledChanged: {
        if (!root.enabled && root.highlighted) {
            root.menu.dismiss();
        }
    }

    background: Rectangle {
        color: root.highlighted && root.enabled ? Theme.selection : "transparent"
        radius: 6
    }
    // The ids in it keep it from being made later, but it is shown at once anyway.
    contentItem: Item { // qmllint disable deferred-property-id
        opacity: root.enabled ? 1 : 0.45

        Label {
            id: title

            Accessible.ignored: true
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
        }

        Label {
            id: keysLabel

            Accessible.ignored: true
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            font.pixelSize: Theme.callout
            text: root.keys
        }
    }
}
