import QtQuick
import QtQuick.Templates as T
import Duskfern.FolderBrowser
import Duskfern.Theme

/// Shows the current path and accepts a typed one.
T.TextField {
    id: root

    required property FolderBrowser browser

    /// Focuses the field and selects its text.
    function begin() {
        root.forceActiveFocus(Qt.ShortcutFocusReason);
        root.selectAll();
    }

    /// Shows the current path instead of the typed text.
    function restore() {
        root.text = root.browser.location;
    }

    Accessible.name: "Ruta de la carpeta"
    Accessible.role: Accessible.EditableText
    color: Theme.primary
    font.family: Theme.family
    font.pixelSize: Theme.body
    hoverEnabled: true
    implicitHeight: Math.ceil(contentHeight) + topPadding + bottomPadding
    leftPadding: 12
    maximumLength: 100000
    persistentSelection: true
    renderType: Text.NativeRendering
    rightPadding: 12
    selectByMouse: true
    selectedTextColor: Theme.onTint
    selectionColor: Theme.accentFill
    text: root.browser.location
    verticalAlignment: TextInput.AlignVCenter
    bottomPadding: 8
    topPadding: 8

    Keys.onPressed: event => menu.press(event)
    onAccepted: root.browser.goTo(root.text)

    background: Rectangle {
        border.color: Theme.outline(root.hovered ? 0.2 : 0.12)
        border.width: 1
        color: Theme.field
        radius: 8

        FocusRing {
            cornerRadius: 11
            shown: root.activeFocus
        }
    }

    TextMenuOpener {
        id: menu

        field: root
    }

    Connections {
        function onNavigated() {
            root.restore();
        }

        target: root.browser
    }
}
