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
            text: app.alertText,
            detail: app.alertSuggestion,
            accept: qsTr("OK"),
            accepted: app.dismissAlert
        },
        stopped: {
            title: qsTr("The recording was stopped"),
            text: qsTr("%1 What was recorded until then is whole.").arg(app.stopNotice),
            accept: qsTr("OK"),
            accepted: app.dismissStopNotice
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
            title: qsTr("Save changes to “%1”?").arg(app.projectName),
            text: qsTr("The changes are lost if they are not saved. The recording itself stays."),
            accept: qsTr("Save"),
            accepted: app.saveAndLeave,
            reject: qsTr("Discard"),
            rejected: app.discardAndLeave,
            rejectIsFinal: true,
            dismiss: qsTr("Cancel"),
            dismissed: app.stay
        },
        readOnly: {
            title: qsTr("Opened to be looked at"),
            text: qsTr("“%1” cannot be changed where it is: %2. It can be edited and exported; saving asks for another place.").arg(app.projectName).arg(app.readOnlyReason),
            accept: qsTr("OK"),
            accepted: app.dismissReadOnlyNotice
        },
        picture: {
            title: qsTr("The background picture is missing"),
            text: qsTr("The film has the plain background instead (%1). Saving needs that picture, or another background.").arg(app.pictureReason),
            accept: qsTr("OK"),
            accepted: app.dismissPictureNotice
        },
        delete: {
            title: qsTr("Delete recording?"),
            text: qsTr("“%1” (%2) is not saved as a project. It cannot be brought back.").arg(app.deletedName).arg(app.deletedAbout),
            accept: qsTr("Keep"),
            accepted: app.keepListed,
            reject: qsTr("Delete"),
            rejected: app.deleteListed,
            rejectIsFinal: true,
            dismissed: app.keepListed
        },
        restore: {
            title: qsTr("Restore unsaved changes?"),
            text: qsTr("Vantro ended before the changes to “%1” were saved. Discard deletes these changes, but neither the recording nor the saved project.").arg(app.restoredName),
            accept: qsTr("Restore"),
            accepted: app.restoreEdit,
            reject: qsTr("Discard"),
            rejected: app.discardEdit,
            rejectIsFinal: true,
            dismissed: app.dismissEdit
        },
        recovery: {
            title: qsTr("Recover recording?"),
            text: qsTr("Vantro ended while this was recorded. It takes %1 on disk.").arg(app.recoverySize),
            accept: qsTr("Recover"),
            accepted: app.recover,
            reject: qsTr("Not Now"),
            rejected: app.dismissRecovery
        }
    })
}
