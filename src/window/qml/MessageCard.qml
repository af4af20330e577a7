import QtQuick

// A message with one to three answers. Escape gives the last one.
FocusScope {
    id: card

    required property string title
    required property string text
    property string detail: ""
    required property string accept
    property string reject: ""
    // The second answer cannot be taken back: Escape then gives the third, which may have no button.
    property bool rejectIsFinal: false
    property string dismiss: ""
    signal accepted()
    signal rejected()
    signal dismissed()

    readonly property size wanted: Qt.size(Math.max(340, box.width + 32), box.height + 32)

    Keys.onEscapePressed: rejectIsFinal ? dismissed() : reject === "" ? accepted() : rejected()

    function focusAnswer() {
        acceptButton.forceActiveFocus(Qt.TabFocusReason)
        acceptButton.focusReason = Qt.TabFocusReason // it may have had the keyboard since before
    }

    Rectangle {
        id: box
        objectName: "alertBox"
        anchors.centerIn: parent
        width: 348
        height: column.height + 2 * Theme.margin
        radius: Theme.radius + 4
        color: Theme.surface
        border.width: 1
        border.color: Theme.border
        Accessible.role: Accessible.AlertMessage
        Accessible.name: card.title
        Accessible.description: card.detail !== "" ? card.text + "\n" + card.detail : card.text

        Column {
            id: column
            x: Theme.margin
            y: Theme.margin
            width: box.width - 2 * Theme.margin
            spacing: Theme.gap
            Label {
                width: parent.width
                text: card.title
                elide: Text.ElideRight
                font.pixelSize: Theme.headline
                font.weight: Font.DemiBold
            }
            Label {
                width: parent.width
                text: card.text
                wrapMode: Text.Wrap
                maximumLineCount: 8
                elide: Text.ElideRight
            }
            Label {
                visible: text !== ""
                width: parent.width
                text: card.detail
                wrapMode: Text.Wrap
                color: Theme.secondaryText
            }
            Item { width: 1; height: Theme.tight }
            Row {
                anchors.right: parent.right
                spacing: Theme.gap
                PushButton {
                    id: dismissButton
                    objectName: "dismissButton"
                    visible: card.dismiss !== ""
                    text: card.dismiss
                    KeyNavigation.tab: rejectButton
                    onClicked: card.dismissed()
                }
                PushButton {
                    id: rejectButton
                    objectName: "rejectButton"
                    visible: card.reject !== ""
                    text: card.reject
                    KeyNavigation.tab: acceptButton
                    onClicked: card.rejected()
                }
                PushButton {
                    id: acceptButton
                    objectName: "acceptButton"
                    prominent: true
                    text: card.accept
                    KeyNavigation.tab: card.dismiss !== "" ? dismissButton : card.reject !== "" ? rejectButton : acceptButton
                    onClicked: card.accepted()
                }
            }
        }
    }
}
