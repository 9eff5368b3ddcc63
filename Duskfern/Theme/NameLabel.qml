import QtQuick
import Duskfern.Theme

/// A name or path on one line, shortened in the middle so that its extension stays. A hint shows the whole.
Label {
    id: root

    elide: Text.ElideMiddle
    maximumLineCount: 1

    HoverHandler {
        id: pointer

        onHoveredChanged: {
            if (pointer.hovered && root.truncated) {
                Hints.show(root, root.text);
            } else {
                Hints.hide(root);
            }
        }
    }
}
