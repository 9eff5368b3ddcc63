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

    Accessible.name: "Menú"
    Accessible.role: Accessible.MenuBar
    color: Theme.sidebar
    implicitHeight: title.implicitHeight + 4

    onEnabledChanged: root.popup?.close()

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }

    MainMenuTitle {
        id: title

        anchors.verticalCenter: parent.verticalCenter
        height: implicitHeight
        open: root.open
        text: "Archivo"
        width: implicitWidth
        x: 6

        onClicked: root.toggle()
    }

    // Loaded when it is first opened, because that takes time and memory. Given as a file, because the type of an inline
    // one would be loaded at launch.
    Loader {
        id: loader
    }
}
