import QtQuick
import Vantro.Native

// The time line: ruler, segments and zooms under one playhead, on one scale, dark in both themes.
Rectangle {
    id: group

    required property EditorActions actions
    required property PlayerTimeObserver transport
    property real hPad: Theme.margin
    property real tickHeight: 6
    property real handleSize: actions.timeline.handleWidth
    readonly property TimelineModel timeline: actions.timeline
    signal taken()

    objectName: "timeline"
    implicitHeight: rows.y + rows.height + 14
    color: Theme.timelineGround
    clip: true
    // Time runs to the right in every language.
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Timeline")

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        onWheel: wheel => {
            const sideways = wheel.angleDelta.x !== 0 ? wheel.angleDelta.x : wheel.modifiers & Qt.ShiftModifier ? wheel.angleDelta.y : 0
            group.timeline.wheel(wheel.x - group.hPad, sideways, wheel.angleDelta.y)
        }
    }
    Binding {
        target: group.timeline
        property: "width"
        value: rows.width
    }
    Column {
        id: rows
        x: group.hPad
        y: 2
        width: Math.max(group.width - 2 * group.hPad, 0)
        spacing: 4
        TimelineRuler {
            width: rows.width
            height: 24
            actions: group.actions
            tickHeight: group.tickHeight
            onTaken: group.taken()
        }
        VideoTrimBar {
            width: rows.width
            height: 48
            actions: group.actions
            handleWidth: group.handleSize
            onTaken: group.taken()
        }
        ZoomEventsBar {
            width: rows.width
            height: 26
            actions: group.actions
            handleWidth: group.handleSize
            onTaken: group.taken()
        }
    }
    Item {
        anchors.fill: rows
        Rectangle {
            objectName: "mark"
            visible: group.timeline.marked
            x: group.timeline.markX
            width: Math.max(group.timeline.markWidth, 1)
            height: parent.height
            color: Theme.timelineMark
            border { width: 1; color: Theme.timelineMarkOutline }
        }
        TimelinePlayhead {
            height: parent.height
            actions: group.actions
            transport: group.transport
        }
    }
    ScrollBar {
        objectName: "timelineScroll"
        anchors { left: rows.left; right: rows.right; bottom: parent.bottom; bottomMargin: 3 }
        orientation: Qt.Horizontal
        implicitHeight: 8
        position: group.timeline.viewStart
        size: group.timeline.viewSpan
        onPositionChanged: if (pressed) group.timeline.scrollTo(position)
    }
}
