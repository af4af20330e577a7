import QtQuick
import Vantro.Native

// Where the film stands, across all bars.
TimeHandle {
    id: playhead

    required property PlayerTimeObserver transport

    objectName: "playhead"
    x: actions.timeline.playheadX - width / 2
    width: 11
    visible: x + width > -8 && x < parent.width + 8
    seconds: transport.currentTime
    name: qsTr("Playhead")
    corner: 3
    onWanted: to => {
        if (transport.duration > 0)
            transport.seek(Math.max(0, Math.min(to / transport.duration, 1)))
    }

    Rectangle {
        x: (parent.width - width) / 2
        y: knob.y
        width: 2
        height: parent.height - y
        color: Theme.timelinePlayhead
    }
    Rectangle {
        id: knob
        y: 15 // below the times of the ruler
        width: parent.width
        height: 10
        radius: 3
        color: Theme.timelinePlayhead
    }
}
