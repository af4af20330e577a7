import QtQuick
import Vantro.Native

// The stage: the film as it will be exported, or why it is not to be seen.
Rectangle {
    id: area

    required property EditorPreview player

    objectName: "stage"
    color: Theme.stage

    PreviewPlayerView {
        anchors.fill: parent
        visible: area.player.ready
        player: area.player
    }
    Row {
        anchors.centerIn: parent
        visible: !area.player.ready && area.player.problem === ""
        spacing: Theme.gap
        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            running: parent.visible
            ink: Theme.stageText
        }
        Label {
            objectName: "loadingPreview"
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Loading preview...")
            color: Theme.stageText
        }
    }
    Label {
        objectName: "previewProblem"
        anchors.centerIn: parent
        width: parent.width - 64
        visible: text !== ""
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        text: area.player.problem
        color: Theme.stageText
    }
}
