import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// What is done to the time line, and why the last thing did nothing.
Row {
    id: tools

    required property EditorActions actions
    required property ActionGuard guard
    signal answered() // a question: the keyboard is the editor's again

    Row {
        id: buttons
        anchors.verticalCenter: parent.verticalCenter
        SymbolButton {
            objectName: "split"
            symbol: "scissors"
            ink: Theme.secondaryText
            help: qsTr("Split at the playhead (S)")
            enabled: tools.guard.edit
            onClicked: tools.actions.split()
        }
        SymbolButton {
            objectName: "deleteSelected"
            symbol: "trash"
            ink: Theme.secondaryText
            help: qsTr("Delete the selected zoom, range or segment (Delete)")
            enabled: tools.guard.edit && tools.actions.canDelete
            onClicked: tools.actions.deleteSelected()
        }
        SymbolButton {
            objectName: "recomputeZooms"
            symbol: "arrow.clockwise"
            ink: Theme.secondaryText
            help: qsTr("Recompute Zooms: start anew from the recorded clicks")
            enabled: tools.guard.edit && tools.actions.canRecompute
            onClicked: tools.actions.hasHandmadeZooms ? question.open() : tools.actions.recomputeZooms()
        }
        SymbolButton {
            objectName: "suggestZooms"
            readonly property bool searching: tools.actions.suggestions.searching
            symbol: searching ? "xmark" : "wand"
            ink: Theme.secondaryText
            help: searching ? qsTr("Stop looking for zooms") : qsTr("Suggest Zooms: find where the pointer rested and the picture changed")
            enabled: tools.guard.edit
            onClicked: tools.actions.suggestions.search()
        }
        SymbolButton {
            objectName: "acceptSuggestions"
            visible: tools.actions.suggestions.count > 0
            symbol: "checkmark"
            ink: Theme.accent
            help: qsTr("Accept All suggested zooms")
            enabled: tools.guard.edit
            onClicked: tools.actions.suggestions.acceptAll()
        }
        SymbolButton {
            objectName: "dismissSuggestions"
            visible: tools.actions.suggestions.count > 0
            symbol: "xmark"
            ink: Theme.secondaryText
            help: qsTr("Dismiss all suggested zooms")
            enabled: tools.guard.edit
            onClicked: tools.actions.suggestions.dismissAll()
        }
    }
    Label {
        objectName: "timelineHint"
        anchors.verticalCenter: parent.verticalCenter
        leftPadding: Theme.gap
        width: Math.max(tools.width - buttons.width, 0)
        wrapMode: Text.WordWrap // a whole sentence beside the buttons, also in a narrow window
        maximumLineCount: 3
        elide: Text.ElideRight
        text: tools.actions.suggestions.searching ? qsTr("Looking for zooms… %1 %").arg(tools.actions.suggestions.percent) : tools.actions.timeline.hint
        color: Theme.secondaryText
        font.pixelSize: Theme.caption
        Accessible.role: Accessible.AlertMessage
    }
    T.Popup {
        id: question
        parent: T.Overlay.overlay
        anchors.centerIn: parent
        modal: true
        implicitWidth: contentItem.implicitWidth + 2 * padding
        implicitHeight: contentItem.implicitHeight + 2 * padding
        focus: true
        closePolicy: T.Popup.NoAutoClose
        onOpened: card.focusAnswer()
        onClosed: tools.answered()
        T.Overlay.modal: Rectangle { color: Theme.scrim }
        contentItem: MessageCard {
            id: card
            objectName: "recomputeCard"
            implicitWidth: wanted.width
            implicitHeight: wanted.height
            title: qsTr("Recompute Zooms?")
            text: qsTr("Zooms that you added by hand are dropped. Undo brings them back.")
            accept: qsTr("Recompute")
            reject: qsTr("Cancel")
            onAccepted: {
                question.close()
                tools.actions.recomputeZooms()
            }
            onRejected: question.close()
        }
    }
}
