import QtQuick
import Duskfern.Theme

/// Passes to the theme what the window knows and its colours and sizes depend on.
Item {
    id: root

    required property bool dark
    required property bool keyboard
    required property bool still
    required property real windowHeight

    Binding {
        property: "dark"
        target: Theme
        value: root.dark
    }

    Binding {
        property: "keyboard"
        target: Theme
        value: root.keyboard
    }

    Binding {
        property: "still"
        target: Theme
        value: root.still
    }

    Binding {
        property: "windowHeight"
        target: Theme
        value: root.windowHeight
    }
}
