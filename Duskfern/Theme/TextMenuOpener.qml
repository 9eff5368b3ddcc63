import QtQuick
import QtQuick.Templates as T

/// Opens the context menu of the text field that it lies in: by the right mouse button, the menu key or Shift+F10.
Item {
    id: root

    required property T.TextField field

    function open(place: point) {
        if (loader.item === null) {
            loader.setSource("qrc:/qt/qml/Duskfern/Theme/TextMenu.qml", {field: root.field});
        }
        (loader.item as CommandMenu).openAt(root.field, place);
    }

    /// To be called with the keys that the field is given.
    function press(event: KeyEvent) {
        event.accepted = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
        if (event.accepted) {
            const cursor = root.field.cursorRectangle;
            root.open(Qt.point(cursor.x, cursor.y + cursor.height));
        }
    }

    anchors.fill: parent

    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: eventPoint => {
            root.field.forceActiveFocus(Qt.MouseFocusReason);
            root.open(eventPoint.position);
        }
    }

    // Loaded when it is first opened, because that takes time and memory. Given as a file, because the type of an inline
    // one would be loaded at launch.
    Loader {
        id: loader
    }
}
