import QtQuick
import QtQuick.Templates as T
import Duskfern.Theme

/// The clickable area and accessibility of a bubble. The map's canvas paints it.
T.AbstractButton {
    id: root

    required property int index
    required property real centerX
    required property real centerY
    required property real diameter
    required property string name
    required property string sizeText
    required property string path

    /// Enter was pressed: select the bubble's file and show it.
    signal revealed

    /// Called for a click, for keys and by assistive technologies.
    function press() {
        if (root.enabled) {
            root.clicked();
        }
    }

    function confirm() {
        root.press();
        root.revealed();
    }

    Accessible.description: root.path
    Accessible.name: root.name + ", " + root.sizeText
    Accessible.role: Accessible.Button
    containmentMask: circle
    height: root.diameter
    hoverEnabled: true
    width: root.diameter
    x: root.centerX - root.diameter / 2
    y: root.centerY - root.diameter / 2

    Accessible.onPressAction: root.press()
    Keys.onEnterPressed: root.confirm()
    Keys.onReturnPressed: root.confirm()

    QtObject {
        id: circle

        function contains(point: point): bool {
            return Math.hypot(point.x - root.width / 2, point.y - root.height / 2) <= root.diameter / 2;
        }
    }

    FocusRing {
        cornerRadius: root.diameter / 2
        inset: 0
        overPicture: true
        shown: root.activeFocus
    }
}
