import QtQuick
import QtQuick.Templates as T

/// Base of buttons without appearance: pressed by pointer, keys and assistive technologies.
T.AbstractButton {
    id: root

    /// Does what a click does, if the button is enabled.
    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    /// Ignores key repeats.
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
