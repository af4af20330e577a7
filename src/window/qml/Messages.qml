import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// The message that lies over everything else in the window, while there is one. Nothing behind it
// can be reached.
T.Popup {
    id: messages

    required property MainModel app
    required property string kind // alert, quit, recovery, or empty for none

    readonly property size wanted: kind !== "" ? card.wanted : Qt.size(0, 0)

    visible: kind !== ""
    z: 1 // over every other popup
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    onOpened: card.focusAnswer()
    onKindChanged: if (opened) card.focusAnswer()

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    contentItem: MessageCard {
        id: card
        objectName: messages.kind + "Card"
        focus: true
        title: ({
            alert: qsTr("Error"),
            quit: qsTr("A recording is running"),
            recovery: qsTr("Recover recording?")
        })[messages.kind] ?? ""
        text: ({
            alert: messages.app.alertText,
            quit: qsTr("Stop it and quit? What was recorded is kept and offered at the next start."),
            recovery: qsTr("The last recording was not saved as a project. It takes %1 on disk; Discard deletes it.").arg(messages.app.recoverySize())
        })[messages.kind] ?? ""
        detail: messages.kind === "alert" ? messages.app.alertSuggestion : ""
        accept: ({
            alert: qsTr("OK"),
            quit: qsTr("Stop and Quit"),
            recovery: qsTr("Recover")
        })[messages.kind] ?? ""
        reject: ({
            quit: qsTr("Keep Recording"),
            recovery: qsTr("Discard")
        })[messages.kind] ?? ""
        rejectIsFinal: messages.kind === "recovery"
        onAccepted: ({
            alert: messages.app.dismissAlert,
            quit: messages.app.stopAndQuit,
            recovery: messages.app.recover
        })[messages.kind]()
        onRejected: ({
            quit: messages.app.keepRecording,
            recovery: messages.app.discardRecovery
        })[messages.kind]()
        onDismissed: messages.app.dismissRecovery()
    }
}
