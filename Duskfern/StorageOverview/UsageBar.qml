import QtQuick
import Duskfern.Theme

/// A bar that shows how full a volume is.
Rectangle {
    id: root

    required property real fraction

    Accessible.ignored: true
    color: Theme.tint(Theme.primary, 0.08)
    implicitHeight: 10
    radius: height / 2

    Rectangle {
        height: parent.height
        radius: height / 2
        width: parent.width * Math.min(root.fraction, 1)

        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                color: Theme.red
                position: 0
            }

            GradientStop {
                color: Theme.orange
                position: 1
            }
        }
    }
}
