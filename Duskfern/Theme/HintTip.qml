import QtQuick
import Duskfern.Theme

/// Shows the hint of `Hints`.
HoverTip {
    parent: Hints.item
    text: Hints.text
    visible: Hints.item !== null
}
