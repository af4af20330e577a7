import QtQuick
import Vantro.Native

// A finished recording: its composed picture at a position, and what can be done with it.
FocusScope {
    id: screen

    required property EditorModel editor
    required property ActionGuard guard

    implicitWidth: 980
    implicitHeight: 680

    EditorToolbar {
        id: toolbar
        anchors { left: parent.left; right: parent.right; top: parent.top }
        z: 1
        editor: screen.editor
        guard: screen.guard
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; top: toolbar.bottom; bottom: bar.top }
        color: Theme.stage

        PictureItem {
            objectName: "picture"
            anchors.fill: parent
            anchors.margins: Theme.margin
            picture: screen.editor.picture
        }
        Label {
            objectName: "pictureText"
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 64)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: screen.editor.pictureText
            color: Theme.secondaryText
        }
    }
    PositionBar {
        id: bar
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        editor: screen.editor
    }
}
