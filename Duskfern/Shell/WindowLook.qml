import QtQuick
import Duskfern.Theme

/// Passes to the theme what the window knows and its colours and sizes depend on.
Item {
    id: root

    required property color accent
    required property bool dark
    required property bool keyboard
    required property bool still
    required property bool strong
    required property real windowHeight

    Binding {
        property: "accent"
        target: Theme
        value: root.accent
    }

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
        property: "strong"
        target: Theme
        value: root.strong
    }

    Binding {
        property: "windowHeight"
        target: Theme
        value: root.windowHeight
    }
}
