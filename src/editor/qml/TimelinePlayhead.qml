import QtQuick
import Vantro.Native

// Where the film stands, across all bars. Assistive technology sets it by its value, in seconds.
TimeHandle {
    id: playhead

    required property PlayerTimeObserver transport
    property real value: seconds
    readonly property real minimumValue: 0
    readonly property real maximumValue: actions.timeline.duration

    objectName: "playhead"
    x: actions.timeline.playheadX - width / 2
    width: 11
    visible: x + width > -8 && x < parent.width + 8
    seconds: transport.currentTime
    corner: 3
    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Playhead")
    Accessible.focusable: true
    Accessible.onIncreaseAction: wanted(seconds + stepSize)
    Accessible.onDecreaseAction: wanted(seconds - stepSize)
    // Written by assistive technology only; what comes of it is told by `seconds`.
    onValueChanged: {
        if (value === seconds)
            return
        const to = value
        value = Qt.binding(() => playhead.seconds)
        wanted(to)
    }
    onWanted: to => {
        if (transport.duration > 0)
            transport.seek(Math.max(0, Math.min(to / transport.duration, 1)))
    }

    // Dark around the light, one of which stands out from any picture.
    Rectangle {
        x: line.x - 1
        y: knob.y
        width: line.width + 2
        height: line.height
        color: Theme.timelineGround
    }
    Rectangle {
        x: knob.x - 1
        y: knob.y - 1
        width: knob.width + 2
        height: knob.height + 2
        radius: knob.radius + 1
        color: Theme.timelineGround
    }
    Rectangle {
        id: line
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
