import QtQuick
import QtQuick.Window
import Vantro.Native

// The pieces of the recording that are kept, what was cut, and the edges between them.
Item {
    id: bar

    required property EditorActions actions
    required property real handleWidth
    signal taken()

    objectName: "segmentsBar"
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Segments")

    function focusRow(row: int) {
        const next = row >= 0 ? segments.itemAt(row) as Item : null
        if (next)
            next.forceActiveFocus(Qt.TabFocusReason)
    }

    // Items may stand for other rows than before: the keyboard stays with what it had.
    Connections {
        target: bar.actions.timeline
        function onStopsChanged() {
            if (rows.focused)
                bar.focusRow(bar.actions.timeline.segmentStop)
        }
    }
    GestureArea {
        gestures: bar.actions.gestures
        bar: BarGestures.Segments
        onTaken: bar.taken()
    }
    Item {
        id: rows
        readonly property bool focused: (Window.activeFocusItem as Item)?.parent === rows
        anchors.fill: parent
        clip: true
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
        // qmllint disable unqualified
        Repeater {
            model: bar.actions.timeline.gaps
            delegate: Rectangle {
                required property bool shown
                required property real startX
                required property real extent
                visible: shown
                x: startX
                width: extent
                height: bar.height
                radius: 4
                color: Theme.timelineGap
            }
        }
        Repeater {
            id: segments
            model: bar.actions.timeline.segments
            delegate: SegmentView {
                height: bar.height
                actions: bar.actions
                onStepped: row => bar.focusRow(row)
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
