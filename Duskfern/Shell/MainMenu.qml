import QtQuick
import QtQuick.Templates as T
import Duskfern.Engine
import Duskfern.Theme

/// The menu bar with its single menu.
Rectangle {
    id: root

    required property ScanStore store

    readonly property string name: title.text
    readonly property bool open: root.popup?.visible ?? false

    /// The menu; null before it is first opened.
    readonly property T.Menu popup: loader.item as T.Menu

    // The focus item before the menu opened, to be restored when it closes. Needed because Qt 6.8 restores the one of the
    // previous opening.
    property Item before: null

    /// The menu was open and is closed now.
    signal closed
    signal quitRequested

    function toggle() {
        if (root.open) {
            root.popup.close();
        } else {
            root.before = root.Window.activeFocusItem;
            if (root.popup === null) {
                loader.setSource("qrc:/qt/qml/Duskfern/Shell/MainMenuPopup.qml", {bar: root});
            }
            root.popup.popup(title, 0, title.height);
            root.popup.currentIndex = Theme.keyboard ? 0 : -1;
        }
    }

    /// To be called when the menu has closed.
    function restoreFocus() {
        root.before?.forceActiveFocus(Qt.PopupFocusReason);
        root.before = null;
        root.closed();
    }

    color: Theme.sidebar
    implicitHeight: title.implicitHeight + 4

    onEnabledChanged: root.popup?.close()

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }

    Pressable {
        id: title

        Accessible.role: Accessible.MenuItem
        anchors.verticalCenter: parent.verticalCenter
        implicitHeight: Math.ceil(contentItem.implicitHeight) + 8
        implicitWidth: contentItem.implicitWidth + 20
        text: "Archivo"
        x: 6

        Keys.onDownPressed: root.toggle()
        onClicked: root.toggle()

        background: Rectangle {
            color: Theme.tint(Theme.primary, root.open || title.down ? 0.12 : title.hovered ? 0.07 : 0)
            radius: 5

            FocusRing {
                cornerRadius: 6
                inset: -1
                shown: title.activeFocus
            }
        }
        contentItem: Label {
            Accessible.ignored: true
            font.pixelSize: Theme.callout
            horizontalAlignment: Text.AlignHCenter
            text: title.text
            verticalAlignment: Text.AlignVCenter
        }
    }

    // Loaded when it is first opened, because that takes time and memory. Given as a file, because the type of an inline
    // one would be loaded at launch.
    Loader {
        id: loader
    }
}
