import QtQuick
import QtQuick.Window
import Vantro.Native

// The program's only window: one screen at a time, whose size it takes.
Window {
    id: window

    required property MainModel app
    required property EditorModel editor
    required property EditorActions actions
    required property WindowPickerModel windows
    required property DisplayChoice displays
    required property ActionGuard guard
    required property UnsavedRecordingsModel recordings
    required property RecentProjectsModel recents
    required property Appearance appearance
    required property LevelMeters meters
    required property DeviceChoice microphones
    required property DeviceChoice cameras
    required property CameraView camera
    readonly property bool seen: visibility !== Window.Hidden && visibility !== Window.Minimized

    readonly property bool covered: guard.message !== ""
    readonly property size wanted: Qt.size(
        Math.min(Math.max(screen.implicitWidth, messages.wanted.width), Screen.desktopAvailableWidth - 16),
        Math.min(Math.max(screen.implicitHeight, messages.wanted.height), Screen.desktopAvailableHeight - 48))
    onCoveredChanged: if (!covered) screen.takeFocus()

    width: 340
    height: 120
    title: app.screen === "editor" ? editor.title : "Vantro"
    color: Theme.window
    onClosing: close => close.accepted = app.mayClose()
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    WindowFitter {
        window: window
        wanted: window.wanted
        resizable: window.app.screen === "editor"
        smallest: Qt.size(760, 480)
    }
    Binding {
        target: Theme
        property: "dark"
        value: window.appearance.dark
    }
    Binding {
        target: window.meters
        property: "watched"
        value: window.seen
    }
    Binding {
        target: window.camera
        property: "watched"
        value: window.seen
    }
    // Below the screens, whose own places for other files come first.
    DropArea {
        id: drop
        anchors.fill: parent
        keys: ["text/uri-list"]
        onEntered: drag => drag.accepted = window.guard.openProject && window.app.canOpen(drag.urls)
        onDropped: dropped => {
            dropped.accept(Qt.CopyAction)
            window.app.openFiles(dropped.urls)
        }
    }
    Loader {
        id: screen
        objectName: "screen"
        anchors.fill: parent
        focus: true
        sourceComponent: ({
            waiting: waiting, controls: controls, picker: picker, asking: asking, confirming: chosen,
            countdown: window.app.chosenPicture !== "" ? chosen : countdown,
            selecting: selecting, recording: recording, editor: editing, empty: empty
        })[window.app.screen]
        onLoaded: takeFocus()
        enabled: !window.covered

        function takeFocus() {
            const shown = item as Item
            if (shown && !window.covered)
                shown.forceActiveFocus()
        }
    }
    Rectangle {
        objectName: "dropFrame"
        anchors { fill: parent; margins: 3 }
        visible: drop.containsDrag
        color: "transparent"
        radius: Theme.radius
        border { width: 2; color: Theme.accent }
    }
    Messages {
        id: messages
        app: window.app
        kind: window.guard.message
        width: window.width
        height: window.height
    }
    Shortcut {
        sequence: "Ctrl+,"
        autoRepeat: false
        enabled: window.guard.message === ""
        onActivated: window.app.showSettings()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: window.close()
    }
    // Components see the ids around them, which qmllint 6.4 does not know.
    // qmllint disable unqualified
    Component {
        id: waiting
        StatusScreen {
            text: qsTr("Waiting for permission...")
            note: window.guard.modeMissing
        }
    }
    Component {
        id: controls
        StartScreen {
            app: window.app
            displays: window.displays
            guard: window.guard
            recordings: window.recordings
            recents: window.recents
            meters: window.meters
            microphones: window.microphones
            cameras: window.cameras
            camera: window.camera
        }
    }
    Component {
        id: picker
        WindowPicker {
            app: window.app
            windows: window.windows
            onChosen: row => window.app.pickWindow(row)
        }
    }
    Component {
        id: asking
        StatusScreen {
            text: qsTr("Choose what to record in your desktop's dialog")
            action: qsTr("Cancel")
            onTriggered: window.app.cancelAsking()
        }
    }
    Component {
        id: chosen
        ChosenScreen {
            app: window.app
        }
    }
    Component {
        id: countdown
        StatusScreen {
            large: true
            text: window.app.countdown
            action: qsTr("Cancel")
            onTriggered: window.app.cancelCountdown()
        }
    }
    Component {
        id: selecting
        StatusScreen {
            text: qsTr("Select area...")
            action: qsTr("Cancel")
            onTriggered: window.app.cancelArea()
        }
    }
    Component {
        id: recording
        RecordingScreen {
            app: window.app
            guard: window.guard
            meters: window.meters
        }
    }
    Component {
        id: editing
        EditorScreen {
            editor: window.editor
            actions: window.actions
            guard: window.guard
        }
    }
    Component {
        id: empty
        StatusScreen {
            text: qsTr("No recording available")
            action: qsTr("New Recording")
            onTriggered: window.editor.newRecording()
        }
    }
}
