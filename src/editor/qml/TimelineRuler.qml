import QtQuick
import Vantro.Native

// Marks and times of the film; a press or drag moves the playhead.
Item {
    id: ruler

    required property EditorActions actions
    required property real tickHeight
    signal taken()

    objectName: "ruler"

    GestureArea {
        gestures: ruler.actions.gestures
        bar: BarGestures.Ruler
        onTaken: ruler.taken()
    }
    RulerPicture {
        anchors.fill: parent
        timeline: ruler.actions.timeline
        name: qsTr("Ruler")
        tickHeight: ruler.tickHeight
        textSize: Theme.caption
        tickColor: Theme.timelineTick
        textColor: Theme.timelineText
        Accessible.role: Accessible.Grouping
    }
}
