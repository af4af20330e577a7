import QtQuick
import QtQuick.Window
import Vantro.Native

// A finished recording: its film, and what can be done with it.
FocusScope {
    id: screen

    required property EditorModel editor
    required property EditorActions actions
    required property ActionGuard guard
    readonly property PlayerTimeObserver transport: editor.preview.transport
    readonly property bool typing: Window.activeFocusItem instanceof TextInput

    implicitWidth: 980
    implicitHeight: 680
    // Where nothing that has the keyboard wants it for itself.
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Escape && !stage.activeFocus) {
            stage.forceActiveFocus()
            event.accepted = true
        } else if (!typing && guard.edit) {
            event.accepted = actions.keyPressed(event.key, event.modifiers, event.text, event.isAutoRepeat)
        }
    }

    EditorToolbar {
        id: toolbar
        anchors { left: parent.left; right: parent.right; top: parent.top }
        z: 1
        editor: screen.editor
        actions: screen.actions
        guard: screen.guard
    }
    VideoPreviewArea {
        id: stage
        focus: true
        anchors { left: parent.left; right: sidebar.left; top: toolbar.bottom; bottom: panel.top }
        player: screen.editor.preview

        ZoomTargetView {
            anchors.fill: parent
            clip: true
            player: stage.player
            target: screen.editor.zoomTarget
        }

        TapHandler {
            onPressedChanged: if (pressed) stage.forceActiveFocus() // ends the typing of the name
        }
    }
    TimelinePanel {
        id: panel
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        editor: screen.editor
        actions: screen.actions
        guard: screen.guard
        onTaken: stage.forceActiveFocus()
    }
    Sidebar {
        id: sidebar
        objectName: "sidebar"
        anchors { right: parent.right; top: toolbar.bottom; bottom: panel.top }
        model: screen.editor.sidebar
    }
    KeyboardHelp {
        id: help
    }
    Connections {
        target: screen.actions
        function onHelpWanted() { help.open() }
    }
    Shortcut {
        sequence: "Ctrl+Z"
        enabled: screen.guard.edit && !help.opened
        onActivated: screen.actions.undo()
    }
    Shortcut {
        sequence: "Ctrl+Shift+Z"
        enabled: screen.guard.edit && !help.opened
        onActivated: screen.actions.redo()
    }
}
