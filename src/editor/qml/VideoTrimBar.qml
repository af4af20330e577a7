import QtQuick
import Vantro.Native

// The pieces of the recording that are kept, what was cut, and the edges between them.
Item {
    id: bar

    required property EditorActions actions
    required property real handleWidth
    signal taken()

    objectName: "segmentsBar"

    GestureArea {
        gestures: bar.actions.gestures
        bar: BarGestures.Segments
        onTaken: bar.taken()
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.timelineSegment
    }
    RecordingStrip {
        objectName: "strip"
        anchors.fill: parent
        strip: bar.actions.strip
        timeline: bar.actions.timeline
        emptyColor: Theme.timelineSegment
        groundColor: Theme.timelineGround
        waveColor: Theme.timelineWave
    }
    SegmentBarPicture {
        anchors.fill: parent
        actions: bar.actions
        name: qsTr("Segments")
        textSize: Theme.caption
        kept: Theme.timelineKept
        keptSelected: Theme.timelineKeptSelected
        outline: Theme.timelineSegmentOutline
        gap: Theme.timelineGap
        handle: Theme.timelineHandle
        ground: Theme.timelineGround
        badge: Theme.timelineBadge
        ink: Theme.timelineInk
        Accessible.role: Accessible.List
        // qmllint disable unqualified
        Item {
            anchors.fill: parent
            clip: true
            Repeater {
                model: bar.actions.timeline.segments
                delegate: SegmentView {
                    height: bar.height
                    actions: bar.actions
                }
            }
        }
        Repeater {
            model: bar.actions.timeline.edges
            delegate: SegmentEdgeView {
                height: bar.height
                actions: bar.actions
                handleWidth: bar.handleWidth
            }
        }
    }
}
