import QtQuick
import Vantro.Native

// Something on the time line that stands at a time and is moved by the arrow keys: by a tenth of a
// second, with Shift by a picture.
Item {
    id: handle

    required property EditorActions actions
    required property real seconds
    property real corner: 4
    readonly property real stepSize: 0.1
    signal wanted(real to)
    signal pressed(var event) // a key without modifiers that moves nothing

    activeFocusOnTab: true
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
