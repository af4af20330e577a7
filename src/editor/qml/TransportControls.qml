import QtQuick
import Vantro.Native

// Skips back, plays or pauses, skips forward; where the playhead is and how long the movie.
Row {
    id: controls

    required property PlayerTimeObserver transport

    spacing: 16
    leftPadding: 16
    rightPadding: 16
    topPadding: 8
    bottomPadding: 8
    // Time runs to the right in every language.
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true

    FigureLabel {
        objectName: "currentTimeLabel"
        anchors.verticalCenter: parent.verticalCenter
        width: 54
        horizontalAlignment: Text.AlignRight
        text: controls.transport.currentTimeLabel
        color: Theme.secondaryText
    }
    SymbolButton {
        objectName: "skipBackward"
        anchors.verticalCenter: parent.verticalCenter
        symbol: "backward.fill"
        symbolSize: Theme.title2
        help: qsTr("Skip 5 seconds back")
        onClicked: controls.transport.skipBackward(5)
    }
    SymbolButton {
        objectName: "playPause"
        anchors.verticalCenter: parent.verticalCenter
        symbol: controls.transport.isPlaying ? "pause.fill" : "play.fill"
        symbolSize: Theme.title
        help: controls.transport.isPlaying ? qsTr("Pause (Space)") : qsTr("Play (Space)")
        onClicked: controls.transport.togglePlayPause()
    }
    SymbolButton {
        objectName: "skipForward"
        anchors.verticalCenter: parent.verticalCenter
        symbol: "forward.fill"
        symbolSize: Theme.title2
        help: qsTr("Skip 5 seconds forward")
        onClicked: controls.transport.skipForward(5)
    }
    FigureLabel {
        objectName: "durationLabel"
        anchors.verticalCenter: parent.verticalCenter
        width: 54
        text: controls.transport.durationLabel
        color: Theme.secondaryText
    }
}
