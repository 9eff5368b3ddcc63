import QtQuick
import Duskfern.Engine
import Duskfern.Theme

/// The menu bar with its single menu.
Rectangle {
    id: root

    required property ScanStore store

    readonly property string name: title.text
    readonly property bool open: root.popup?.visible ?? false

    /// The menu; null before it is first opened.
    readonly property CommandMenu popup: loader.item as CommandMenu

    /// The menu was open and is closed now.
    signal closed
    signal quitRequested

    function toggle() {
        if (root.open) {
            root.popup.close();
        } else {
            if (root.popup === null) {
                loader.setSource("qrc:/qt/qml/Duskfern/Shell/MainMenuPopup.qml", {bar: root});
            }
            root.popup.openAt(title, Qt.point(0, title.height));
        }
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
