import QtQuick
import Duskfern.FolderBrowser
import Duskfern.Theme

/// The program's own folder dialog, above the shaded window. Holds the keyboard focus while open.
FocusScope {
    id: root

    required property FolderBrowser browser

    anchors.fill: parent
    focus: true

    Keys.onEscapePressed: root.browser.cancel()
    Keys.onPressed: event => {
        if (event.modifiers === Qt.AltModifier && event.key === Qt.Key_Up) {
            root.browser.goUp();
        } else if (event.modifiers === Qt.AltModifier && event.key === Qt.Key_Left) {
            root.browser.goBack();
        } else if (event.modifiers === Qt.ControlModifier && event.key === Qt.Key_L) {
            header.typePath();
        } else {
            return;
        }
        event.accepted = true;
    }

    Shade {}

    Rectangle {
        Accessible.name: header.title
        Accessible.role: Accessible.Dialog
        anchors.centerIn: parent
        border.color: Theme.outline(0.12)
        color: Theme.raised
        height: Math.min(root.height - 48, 34 * Theme.body + 170)
        radius: 14
        width: Math.min(root.width - 48, 46 * Theme.body + 240)

        // The order of these items is the Tab order.
        FolderList {
            id: list

            anchors.bottom: footer.top
            anchors.left: places.right
            anchors.right: parent.right
            anchors.top: header.bottom
            browser: root.browser
            focus: true
        }

        FolderBrowserFooter {
            id: footer

            anchors.bottom: parent.bottom
            browser: root.browser
            width: parent.width
        }

        FolderBrowserHeader {
            id: header

            browser: root.browser
            width: parent.width
        }

        PlaceList {
            id: places

            anchors.bottom: footer.top
            anchors.top: header.bottom
            browser: root.browser
            width: Math.min(parent.width * 0.34, 7 * Theme.body + 110)
        }
    }

    Connections {
        function onNavigated() {
            list.forceActiveFocus();
        }

        target: root.browser
    }
}
