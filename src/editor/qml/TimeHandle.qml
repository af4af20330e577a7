import QtQuick
import Vantro.Native

// Something on the time line that stands at a time and is moved by the arrow keys: by a tenth of a
// second, with Shift by a picture. Assistive technology sets it by its value, in seconds.
Item {
    id: handle

    required property EditorActions actions
    required property real seconds
    required property string name
    property bool isStop: true
    property real corner: 4
    property real value: seconds
    readonly property real minimumValue: 0
    readonly property real maximumValue: actions.timeline.duration
    readonly property real stepSize: 0.1
    signal wanted(real to)
    signal pressed(var event) // a key without modifiers that moves nothing

    activeFocusOnTab: isStop || activeFocus
    Accessible.role: Accessible.Slider
    Accessible.name: name
    Accessible.focusable: true
    Accessible.onIncreaseAction: wanted(seconds + stepSize)
    Accessible.onDecreaseAction: wanted(seconds - stepSize)
    // Written by assistive technology only; what comes of it is told by `seconds`.
    onValueChanged: {
        if (value === seconds)
            return
        const to = value
        value = Qt.binding(() => handle.seconds)
        wanted(to)
    }
    Keys.onPressed: event => {
        const step = event.modifiers === Qt.ShiftModifier ? actions.timeline.frameSeconds : stepSize
        if ((event.modifiers & ~Qt.ShiftModifier) !== 0)
            return
        if (event.key === Qt.Key_Left || event.key === Qt.Key_Right) {
            wanted(seconds + (event.key === Qt.Key_Left ? -step : step))
            event.accepted = true
        } else if (event.modifiers === Qt.NoModifier)
            pressed(event)
    }

    // qmllint disable unqualified
    Loader {
        anchors { fill: active ? handle : undefined; margins: -3 }
        z: 1
        active: handle.activeFocus
        sourceComponent: Rectangle {
            radius: handle.corner + 3
            color: "transparent"
            border { width: 2; color: Theme.timelineFocus }
        }
    }
}
