import QtQuick
import QtQuick.Window
import Vantro.Native

// The program's only window: one screen at a time, whose size it takes.
Window {
    id: window

    required property QtObject app
    required property QtObject editor
    required property QtObject windows
    required property QtObject appearance

    readonly property MessageCard card: app.alertShown ? alert.item : app.quitAsked ? quitQuestion.item : app.recoveryOffered && app.screen === "controls" ? recovery.item : null
    readonly property size wanted: Qt.size(
        Math.min(Math.max(screen.implicitWidth, card ? card.wanted.width : 0), Screen.desktopAvailableWidth - 16),
        Math.min(Math.max(screen.implicitHeight, card ? card.wanted.height : 0), Screen.desktopAvailableHeight - 48))
    onCardChanged: if (!card && screen.item) screen.item.forceActiveFocus()

    width: 340
    height: 120
    title: "Vantro"
    color: Theme.window
    onClosing: close => close.accepted = app.mayClose()

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
    Loader {
        id: screen
        objectName: "screen"
        anchors.fill: parent
        focus: true
        sourceComponent: ({
            waiting: waiting, controls: controls, picker: picker, countdown: countdown,
            selecting: selecting, recording: recording, editor: editing, empty: empty
        })[window.app.screen]
        onLoaded: if (!window.card) item.forceActiveFocus()
        enabled: !window.card
    }
    Component {
        id: waiting
        StatusScreen { text: "Waiting for permission..." }
    }
    Component {
        id: controls
        RecordingControls { app: window.app }
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
        id: countdown
        StatusScreen {
            large: true
            text: window.app.countdown
            action: "Cancel"
            onTriggered: window.app.cancelCountdown()
        }
    }
    Component {
        id: selecting
        StatusScreen {
            text: "Select area..."
            action: "Cancel"
            onTriggered: window.app.cancelArea()
        }
    }
    Component {
        id: recording
        RecordingScreen { app: window.app }
    }
    Component {
        id: editing
        EditorScreen {
            app: window.app
            editor: window.editor
        }
    }
    Component {
        id: empty
        StatusScreen {
            text: "No recording available"
            action: "New Recording"
            onTriggered: window.editor.newRecording()
        }
    }
    Loader {
        id: recovery
        anchors.fill: parent
        active: window.app.recoveryOffered
        sourceComponent: MessageCard {
            objectName: "recoveryCard"
            visible: window.card === this
            title: "Recover recording?"
            text: "The last recording was not saved as a project."
            accept: "Recover"
            reject: "Discard"
            onAccepted: window.app.recover()
            onRejected: window.app.dismissRecovery()
        }
    }
    Loader {
        id: quitQuestion
        anchors.fill: parent
        active: window.app.quitAsked
        sourceComponent: MessageCard {
            objectName: "quitCard"
            visible: window.card === this
            title: "A recording is running"
            text: "Stop it and quit? What was recorded is kept and offered at the next start."
            accept: "Stop and Quit"
            reject: "Keep Recording"
            onAccepted: window.app.stopAndQuit()
            onRejected: window.app.keepRecording()
        }
    }
    Loader {
        id: alert
        anchors.fill: parent
        active: window.app.alertShown
        sourceComponent: MessageCard {
            objectName: "alertCard"
            visible: window.card === this
            title: "Error"
            text: window.app.alertText
            detail: window.app.alertSuggestion
            accept: "OK"
            onAccepted: window.app.dismissAlert()
        }
    }
}
