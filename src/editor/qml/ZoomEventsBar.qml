import QtQuick
import Vantro.Native

// One block for each zoom, hatched for a suggested one; those that the keyboard reaches have items.
Item {
    id: bar

    required property EditorActions actions
    required property real handleWidth
    signal taken()

    objectName: "zoomBar"

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: Theme.timelineInk
        opacity: 0.08
    }
    GestureArea {
        gestures: bar.actions.gestures
        bar: BarGestures.Zooms
        onTaken: bar.taken()
    }
    ZoomBarPicture {
        anchors.fill: parent
        clip: true
        actions: bar.actions
        name: qsTr("Zooms")
        textSize: Theme.caption
        fill: Theme.timelineZoom
        outline: Theme.timelineZoomOutline
        ink: Theme.timelineInk
        Accessible.role: Accessible.List
        // qmllint disable unqualified
        Repeater {
            model: bar.actions.timeline.suggestions
            delegate: SuggestionView {
                height: bar.height
                actions: bar.actions
            }
        }
        Repeater {
            model: bar.actions.timeline.zooms
            delegate: ZoomBlockView {
                height: bar.height
                actions: bar.actions
                handleWidth: bar.handleWidth
            }
        }
    }
}
