import QtQuick
import QtQuick.Window
import Vantro.Native

// One block for each zoom.
Item {
    id: bar

    required property EditorActions actions
    required property real handleWidth
    signal taken()

    objectName: "zoomBar"
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Zooms")

    function focusRow(row: int) {
        const next = row >= 0 ? blocks.itemAt(row) as Item : null
        if (next)
            next.forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: Theme.timelineInk
        opacity: 0.08
    }
    // Items may stand for other rows than before: the keyboard stays with what it had.
    Connections {
        target: bar.actions.timeline
        function onStopsChanged() {
            if (rows.focused)
                bar.focusRow(bar.actions.timeline.zoomStop)
        }
    }
    GestureArea {
        gestures: bar.actions.gestures
        bar: BarGestures.Zooms
        onTaken: bar.taken()
    }
    Item {
        id: rows
        readonly property bool focused: (Window.activeFocusItem as Item)?.parent === rows
        anchors.fill: parent
        clip: true
        // qmllint disable unqualified
        Repeater {
            id: blocks
            model: bar.actions.timeline.zooms
            delegate: ZoomBlockView {
                height: bar.height
                actions: bar.actions
                handleWidth: bar.handleWidth
                onStepped: row => bar.focusRow(row)
            }
        }
    }
}
