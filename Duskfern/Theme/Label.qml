import QtQuick

/// Plain text: markup in a file name is not interpreted. A text of one line that does not fit its width shrinks; a name
/// or path is shortened in the middle instead.
Text {
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    color: Theme.primary
    elide: Text.ElideRight
    font.family: Theme.family
    font.pixelSize: Theme.body
    fontSizeMode: elide === Text.ElideMiddle || wrapMode !== Text.NoWrap ? Text.FixedSize : Text.HorizontalFit
    minimumPixelSize: 10
    renderType: Text.NativeRendering
    textFormat: Text.PlainText
}
