import QtQuick
import Vantro.Native

// A finished recording: its film, and what can be done with it.
FocusScope {
    id: screen

    required property EditorModel editor
    required property ActionGuard guard
    readonly property PlayerTimeObserver transport: editor.preview.transport

    implicitWidth: 980
    implicitHeight: 680
    // Where nothing that has the keyboard wants it for itself.
    Keys.onSpacePressed: event => {
        if (screen.guard.edit && !event.isAutoRepeat)
            screen.transport.togglePlayPause()
    }

    EditorToolbar {
        id: toolbar
        anchors { left: parent.left; right: parent.right; top: parent.top }
        z: 1
        editor: screen.editor
        guard: screen.guard
    }
    VideoPreviewArea {
        id: stage
        focus: true
        anchors { left: parent.left; right: sidebar.left; top: toolbar.bottom; bottom: playhead.top; bottomMargin: Theme.tight }
        player: screen.editor.preview

        TapHandler {
            onPressedChanged: if (pressed) stage.forceActiveFocus() // ends the typing of the name
        }
    }
    Sidebar {
        id: sidebar
        objectName: "sidebar"
        anchors { right: parent.right; top: toolbar.bottom; bottom: playhead.top }
        model: screen.editor.sidebar
        onKeysReturned: stage.forceActiveFocus()
    }
    PlayheadSlider {
        id: playhead
        objectName: "playhead"
        anchors { left: parent.left; right: parent.right; bottom: transport.top; leftMargin: Theme.margin; rightMargin: Theme.margin }
        transport: screen.transport
    }
    TransportControls {
        id: transport
        anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        transport: screen.transport
    }
    SymbolButton {
        objectName: "mute"
        anchors { left: transport.right; verticalCenter: transport.verticalCenter }
        symbol: screen.editor.preview.muted ? "speaker.slash.fill" : "speaker.wave.2.fill"
        symbolSize: Theme.title2
        enabled: screen.editor.preview.hasSound
        ink: Theme.secondaryText
        help: screen.editor.preview.muted ? qsTr("Sound on in the preview") : qsTr("Sound off in the preview")
        onClicked: screen.editor.preview.muted = !screen.editor.preview.muted
    }
}
