import QtQuick
import QtQuick.Templates as T

// The keys of the editor.
T.Popup {
    id: sheet

    readonly property var keys: [
        [qsTr("Space"), qsTr("Play or pause")],
        ["← →", qsTr("One second back or forward")],
        [", .", qsTr("One picture back or forward")],
        [qsTr("Home, End"), qsTr("First and last picture")],
        [qsTr("S, Ctrl+B"), qsTr("Split at the playhead")],
        ["[ ]", qsTr("Begin or end the film at the playhead")],
        [qsTr("I O"), qsTr("Mark where a range begins and ends")],
        [qsTr("Shift+drag"), qsTr("Mark a range")],
        [qsTr("Delete"), qsTr("Delete the zoom, range or segment")],
        [qsTr("Enter, Delete"), qsTr("Accept or dismiss a suggested zoom")],
        [qsTr("Double click"), qsTr("Add a zoom on the empty zoom bar")],
        [qsTr("Wheel, + - 0"), qsTr("Magnify the timeline, show all")],
        [qsTr("Ctrl+Z"), qsTr("Undo")],
        [qsTr("Ctrl+Shift+Z"), qsTr("Redo")],
        [qsTr("Ctrl+S"), qsTr("Save Project")],
        [qsTr("Ctrl+Shift+S"), qsTr("Save As")],
        [qsTr("Ctrl+E"), qsTr("Export")],
        [qsTr("Ctrl+N, Ctrl+O"), qsTr("New Recording, Open Project")],
        [qsTr("Ctrl+Comma, Ctrl+Q"), qsTr("Settings, Quit")],
        [qsTr("Tab"), qsTr("Go to the next control, zoom or segment")],
        ["↑ ↓", qsTr("Next zoom or segment")],
        ["← →", qsTr("Move it by 0.1 s, with Shift by a picture")],
        [qsTr("Esc"), qsTr("Give the keys back to the film")]
    ]

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    padding: Theme.margin
    implicitWidth: contentItem.implicitWidth + 2 * padding
    implicitHeight: contentItem.implicitHeight + 2 * padding
    margins: Theme.gap
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    T.Overlay.modal: Rectangle { color: Theme.scrim }
    contentItem: Column {
        objectName: "keyboardHelp"
        spacing: Theme.wide
        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("Keyboard")
        Keys.onPressed: event => {
            if (event.text === "?")
                sheet.close()
        }
        focus: true
        Label {
            anchors.left: parent.left
            text: qsTr("Keyboard")
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
        }
        Grid {
            id: table
            columns: 4
            // Of what one half has for its keys and for what they do; where the window is narrow, texts wrap.
            readonly property real room: (sheet.parent ? sheet.parent.width - 2 * Theme.gap - 2 * sheet.padding - 3 * columnSpacing : 0) / 2
            columnSpacing: Theme.margin
            rowSpacing: 6
            // qmllint disable unqualified
            Repeater {
                model: sheet.keys.length * 2
                Label {
                    id: cell
                    required property int index
                    readonly property int half: Math.ceil(sheet.keys.length / 2)
                    readonly property int column: index % 4
                    // Down the left half of the sheet first, then down the right one.
                    readonly property int entry: Math.floor(index / 4) + (column >= 2 ? half : 0)
                    // A label's own implicit width follows its width as soon as it wraps.
                    width: Math.min(Math.ceil(unwrapped.advanceWidth) + 1, table.room * (column % 2 === 0 ? 0.35 : 0.65))
                    wrapMode: Text.Wrap
                    text: (sheet.keys[entry] ?? ["", ""])[column % 2]
                    color: column % 2 === 0 ? Theme.text : Theme.secondaryText
                    font.weight: column % 2 === 0 ? Font.Medium : Font.Normal
                    TextMetrics {
                        id: unwrapped
                        font: cell.font
                        text: cell.text
                    }
                }
            }
        }
    }
    background: Rectangle {
        radius: Theme.radius + 4
        color: Theme.surface
        border { width: 1; color: Theme.border }
    }
}
