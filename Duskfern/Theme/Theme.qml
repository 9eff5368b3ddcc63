pragma Singleton

import QtQuick
import Duskfern.Theme

/// Every colour and font size of the program. Font sizes scale with the desktop's font; colours have a light and a dark
/// variant.
QtObject {
    id: root

    /// Set by the window.
    property bool dark: false

    /// Set by the window: its height.
    property real windowHeight: 760

    /// Set by the window: whether nothing should move that need not.
    property bool still: false

    /// Set by the window: whether outlines and lesser texts are to stand out more.
    property bool strong: false

    /// Set by the window: the desktop's colour of what is selected or has the focus; transparent for the blue below.
    property color accent: "transparent"

    /// Set by the window: whether the last input was a key. Focus rings are shown only then.
    property bool keyboard: false

    readonly property color red: root.dark ? "#FF453A" : "#FF3B30"
    readonly property color orange: root.dark ? "#FF9F0A" : "#FF9500"
    readonly property color pink: root.dark ? "#FF375F" : "#FF2D55"
    readonly property color purple: root.dark ? "#BF5AF2" : "#AF52DE"
    readonly property color blue: root.dark ? "#0A84FF" : "#007AFF"
    readonly property color mint: root.dark ? "#63E6E2" : "#00C7BE"
    readonly property color teal: root.dark ? "#40C8E0" : "#30B0C7"
    readonly property color gray: root.dark ? "#98989D" : "#8E8E93"

    /// Tones of the colours above for text, and for fills under white text: with them a text has a contrast of 4.5 at
    /// least on every surface it stands on.
    readonly property color redText: root.dark ? "#FF8F87" : "#B0160D"
    readonly property color tealText: root.dark ? "#40C8E0" : "#1A6371"
    readonly property color redFill: root.dark ? "#D92015" : "#DE2015"
    readonly property color redMark: root.dark ? root.red : "#E8291E"

    /// The same for what is selected or has the focus.
    readonly property bool accented: root.accent.a > 0
    readonly property color accentFill: root.accented ? Tones.against(root.accent, root.onTint, 4.5) : "#0067D6"

    /// The colour of text, and of fills in shades of it.
    readonly property color primary: root.dark ? "#F5F5F7" : "#1D1D1F"
    readonly property color secondary: root.strong ? (root.dark ? "#E0E0E5" : "#3A3A3E") : root.dark ? "#B6B6BC" : "#58585E"

    readonly property color window: root.dark ? "#1C1C1E" : "#F9F9FA"
    readonly property color sidebar: root.dark ? "#242427" : "#F0F0F2"
    readonly property color raised: root.dark ? "#2C2C2F" : "#FFFFFF"
    readonly property color field: root.dark ? root.tint(root.primary, 0.08) : "#FFFFFF"

    /// Text on fills of the colours above.
    readonly property color onTint: "#FFFFFF"

    /// Drawn over a button, nearly transparent, while it is hovered or pressed.
    readonly property color lighten: "#FFFFFF"
    readonly property color darken: "#000000"
    readonly property color divider: root.outline(root.dark ? 0.12 : 0.1)

    /// Pale enough, or dark enough, that text can be read on it.
    readonly property color selection: root.tint(root.accented ? Tones.against(root.accent, root.dark ? "white" : "black", 4.5) : root.blue, root.dark ? 0.3 : 0.18)
    readonly property color focus: root.accented ? Tones.against(root.accent, root.raised, 5.5) : root.dark ? "#5CADFF" : "#0056B3"
    readonly property color shade: root.dark ? "#80000000" : "#4D000000"

    readonly property string family: SystemFont.family
    readonly property int largeTitle: root.scaled(2.0)
    readonly property int title: root.scaled(1.7)
    readonly property int title2: root.scaled(1.3)
    readonly property int title3: root.scaled(1.15)
    readonly property int headline: root.scaled(1.0)
    readonly property int body: root.scaled(1.0)
    readonly property int callout: root.scaled(0.92)
    readonly property int caption: root.scaled(0.85)
    readonly property int caption2: root.scaled(0.8)
    readonly property int fixed9: root.scaled(0.69)
    readonly property int fixed8: root.scaled(0.62)

    /// How much wider than usual the text is; widths that hold a text follow it.
    readonly property real growth: Math.max(1, root.body / 15)

    /// The greatest width of a row whose begin and end are read together.
    readonly property int widestRow: 1600

    /// Whether the text leaves little room in the window. Insets then shrink, and what only decorates yields.
    readonly property bool compact: root.windowHeight < 34 * root.body

    function inset(length: real): real {
        return root.compact ? Math.round(length / 2) : length;
    }

    function scaled(factor: real): int {
        return Math.max(10, Math.round(SystemFont.pixelSize * factor));
    }

    /// The colour of an outline, of an opacity unless outlines are to stand out.
    function outline(opacity: real): color {
        return root.tint(root.primary, root.strong ? 0.6 : opacity);
    }

    function tint(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }
}
