import QtQuick

/// A thin line between two parts of a screen.
Rectangle {
    color: Theme.divider
    implicitHeight: 1
    implicitWidth: 1
}
