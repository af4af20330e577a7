import QtQuick
import Vantro.Native

// Marks and times of the film; a press or drag moves the playhead.
Item {
    id: ruler

    required property EditorActions actions
    required property real tickHeight
    signal taken()

    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Ruler")
    objectName: "ruler"

    GestureArea {
        gestures: ruler.actions.gestures
        bar: BarGestures.Ruler
        onTaken: ruler.taken()
    }
    RulerTicks {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: ruler.tickHeight
        timeline: ruler.actions.timeline
        color: Theme.timelineTick
    }
    // qmllint disable unqualified
    Repeater {
        model: ruler.actions.timeline.labels
        delegate: Label {
            required property bool shown
            required property real startX
            required property string label

            visible: shown
            x: Math.max(0, Math.min(startX - width / 2, ruler.width - width))
            y: ruler.height - ruler.tickHeight - height - 1
            text: label
            color: Theme.timelineText
            font.pixelSize: Theme.caption
        }
    }
}
