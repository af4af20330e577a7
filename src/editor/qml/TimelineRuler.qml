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
    // qmllint disable unqualified
    Repeater {
        model: ruler.actions.timeline.marks
        delegate: Item {
            id: mark
            required property bool shown
            required property real startX
            required property bool major
            required property string label

            visible: shown
            height: ruler.height
            Rectangle {
                x: Math.round(mark.startX)
                y: ruler.height - height
                width: 1
                height: mark.major ? ruler.tickHeight : ruler.tickHeight / 2
                color: Theme.timelineTick
            }
            Label {
                id: text
                x: Math.max(0, Math.min(mark.startX - width / 2, ruler.width - width))
                y: ruler.height - ruler.tickHeight - height - 1
                visible: mark.major
                text: mark.label
                color: Theme.timelineText
                font.pixelSize: Theme.caption
            }
        }
    }
}
