pragma Singleton

import QtQuick

/// The hint with the whole of a shortened name. The window has one for all, because creating one takes longer than
/// creating a row.
QtObject {
    id: root

    /// What the pointer is on; null without a hint.
    property Item item: null
    property string text: ""

    function show(item: Item, text: string) {
        root.text = text;
        root.item = text === "" ? null : item;
    }

    function hide(item: Item) {
        if (root.item === item) {
            root.item = null;
        }
    }
}
