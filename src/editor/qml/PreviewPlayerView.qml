import QtQuick
import Vantro.Native

// What the player shows, without controls of its own.
PreviewItem {
    required property EditorPreview player

    objectName: "picture"
    stream: player.pictures
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Preview")
}
