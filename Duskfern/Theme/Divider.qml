import QtQuick

/// A hairline between two parts of a screen.
Rectangle {
    color: Theme.divider
    implicitHeight: 1
    implicitWidth: 1
}
