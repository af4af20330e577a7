import QtQuick

Text {
    color: Theme.text
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft // else the text's own language decides, not the window's
    renderType: Text.QtRendering
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
