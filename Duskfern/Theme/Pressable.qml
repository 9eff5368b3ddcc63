import QtQuick
import QtQuick.Templates as T

/// A button without a look of its own: pressed by pointer, keys and assistive technologies.
T.AbstractButton {
    id: root

    /// Does what a click does, if the button is enabled.
    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    /// A key that is held down presses once.
    function pressOnce(event: KeyEvent) {
        if (!event.isAutoRepeat) {
            root.press();
        }
    }

    Accessible.name: root.text
    Accessible.role: Accessible.Button
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.onPressAction: root.press()
    Keys.onEnterPressed: event => root.pressOnce(event)
    Keys.onReturnPressed: event => root.pressOnce(event)
}
