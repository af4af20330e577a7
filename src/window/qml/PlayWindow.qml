import QtQuick
import QtQuick.Window
import Vantro.Native

// A film and nothing else. Space plays and pauses; Escape ends.
Window {
    id: window

    required property EditorPreview player

    width: 1280
    height: 800
    title: "Vantro"
    color: Theme.stage

    VideoPreviewArea {
        anchors.fill: parent
        focus: true
        player: window.player
        Keys.onSpacePressed: event => {
            if (!event.isAutoRepeat)
                window.player.transport.togglePlayPause()
        }
        Keys.onEscapePressed: window.close()
    }
}
