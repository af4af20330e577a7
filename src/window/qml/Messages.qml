import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// The message that lies over everything else in the window, while there is one. Nothing behind it
// can be reached.
T.Popup {
    id: messages

    required property MainModel app
    required property string kind // a key of byKind, or empty for none

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
        title: shown.title
        text: shown.text
        detail: shown.detail ?? ""
        accept: shown.accept
        reject: shown.reject ?? ""
        dismiss: shown.dismiss ?? ""
        rejectIsFinal: shown.rejectIsFinal ?? false
        onAccepted: shown.accepted()
        onRejected: shown.rejected()
        onDismissed: shown.dismissed()

        readonly property var shown: messages.byKind[messages.kind] ?? messages.none
    }

    readonly property var none: ({ title: "", text: "", accept: "" })
    readonly property var byKind: ({
        alert: {
            title: qsTr("Error"),
            text: app.messages.alertText,
            detail: app.messages.alertSuggestion,
            accept: qsTr("OK"),
            accepted: app.messages.dismissAlert
        },
        stopped: {
            title: qsTr("The recording was stopped"),
            text: qsTr("%1 What was recorded until then is whole.").arg(app.messages.stopNotice),
            accept: qsTr("OK"),
            accepted: app.messages.dismissStopNotice
        },
        quit: {
            title: qsTr("A recording is running"),
            text: qsTr("Stop it and quit? What was recorded is kept and offered at the next start."),
            accept: qsTr("Stop and Quit"),
            accepted: app.stopAndQuit,
            reject: qsTr("Keep Recording"),
            rejected: app.keepRecording
        },
        unsaved: {
            title: qsTr("Save changes to “%1”?").arg(app.messages.projectName),
            text: qsTr("The changes are lost if they are not saved. The recording itself stays."),
            accept: qsTr("Save"),
            accepted: app.messages.saveAndLeave,
            reject: qsTr("Discard"),
            rejected: app.messages.discardAndLeave,
            rejectIsFinal: true,
            dismiss: qsTr("Cancel"),
            dismissed: app.messages.stay
        },
        readOnly: {
            title: qsTr("Opened to be looked at"),
            text: qsTr("“%1” cannot be changed where it is: %2. It can be edited and exported; saving asks for another place.").arg(app.messages.projectName).arg(app.messages.readOnlyReason),
            accept: qsTr("OK"),
            accepted: app.messages.dismissReadOnlyNotice
        },
        picture: {
            title: qsTr("The background picture is missing"),
            text: qsTr("The film has the plain background instead (%1). Saving needs that picture, or another background.").arg(app.messages.pictureReason),
            accept: qsTr("OK"),
            accepted: app.messages.dismissPictureNotice
        },
        delete: {
            title: qsTr("Delete recording?"),
            text: qsTr("“%1” (%2) is not saved as a project. It cannot be brought back.").arg(app.messages.deletedName).arg(app.messages.deletedAbout),
            accept: qsTr("Keep"),
            accepted: app.messages.keepListed,
            reject: qsTr("Delete"),
            rejected: app.messages.deleteListed,
            rejectIsFinal: true,
            dismissed: app.messages.keepListed
        },
        restore: {
            title: qsTr("Restore unsaved changes?"),
            text: qsTr("Vantro ended before the changes to “%1” were saved. Discard deletes these changes, but neither the recording nor the saved project.").arg(app.messages.restoredName),
            accept: qsTr("Restore"),
            accepted: app.messages.restoreEdit,
            reject: qsTr("Discard"),
            rejected: app.messages.discardEdit,
            rejectIsFinal: true,
            dismissed: app.messages.dismissEdit
        },
        recovery: {
            title: qsTr("Recover recording?"),
            text: qsTr("Vantro ended while this was recorded. It takes %1 on disk.").arg(app.messages.recoverySize),
            accept: qsTr("Recover"),
            accepted: app.messages.recover,
            reject: qsTr("Not Now"),
            rejected: app.messages.dismissRecovery
        }
    })
}
