import QtQuick
import QtQuick.Templates as T

/// The context menu of a text field.
CommandMenu {
    id: root

    required property T.TextField field

    readonly property bool selects: root.field.selectedText !== ""

    title: "Editar"

    CommandItem {
        enabled: root.field.canUndo
        keys: "Ctrl+Z"
        text: "Deshacer"

        onTriggered: root.field.undo()
    }

    CommandItem {
        enabled: root.field.canRedo
        keys: "Ctrl+Mayús+Z"
        text: "Rehacer"

        onTriggered: root.field.redo()
    }

    CommandItem {
        enabled: root.selects
        keys: "Ctrl+X"
        text: "Cortar"

        onTriggered: root.field.cut()
    }

    CommandItem {
        enabled: root.selects
        keys: "Ctrl+C"
        text: "Copiar"

        onTriggered: root.field.copy()
    }

    CommandItem {
        enabled: root.field.canPaste
        keys: "Ctrl+V"
        text: "Pegar"

        onTriggered: root.field.paste()
    }

    CommandItem {
        enabled: root.selects
        keys: "Supr"
        text: "Eliminar"

        onTriggered: root.field.remove(root.field.selectionStart, root.field.selectionEnd)
    }

    CommandItem {
        enabled: root.field.length > 0
        keys: "Ctrl+A"
        text: "Seleccionar todo"

        onTriggered: root.field.selectAll()
    }
}
