import QtQuick
import Vantro.Native

// A piece of the recording that is kept, with its speed where that is not the usual one.
Item {
    id: segment

    required property int index
    required property bool shown
    required property bool stop
    required property real startX
    required property real extent
    required property bool selected
    required property string badge
    required property string name
    required property EditorActions actions
    signal stepped(int row)

    visible: shown
    x: startX
    width: Math.max(extent, 1)
    activeFocusOnTab: stop || activeFocus
    Accessible.ignored: !shown
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: actions.gestures.selectSegment(index)
    Keys.onPressed: event => {
        if (event.modifiers !== Qt.NoModifier)
            return
        const by = ({ [Qt.Key_Left]: -1, [Qt.Key_Up]: -1, [Qt.Key_Right]: 1, [Qt.Key_Down]: 1 })[event.key]
        if (by !== undefined)
            stepped(actions.gestures.stepSegment(index, by))
        else if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            actions.gestures.selectSegment(index)
        else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace) {
            actions.gestures.selectSegment(index)
            actions.deleteSelected()
        } else
            return
        event.accepted = true
    }

    Rectangle {
        anchors { fill: parent; leftMargin: segment.extent > 4 ? 0.5 : 0; rightMargin: anchors.leftMargin }
        radius: 4
        color: segment.selected ? Theme.timelineKeptSelected : Theme.timelineKept
        border { width: segment.selected ? 2 : 0; color: Theme.timelineSegmentOutline }
    }
    Rectangle { // not loaded when there is room: many would come at once where a wheel magnifies
        anchors.centerIn: parent
        visible: segment.badge !== "" && segment.extent >= 44
        width: speed.width + 10
        height: speed.height + 4
        radius: height / 2
        color: Theme.timelineBadge
        Label {
            id: speed
            anchors.centerIn: parent
            text: parent.visible ? segment.badge : ""
            color: Theme.timelineInk
            font.pixelSize: Theme.caption
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
    }
    // qmllint disable unqualified
    Loader {
        anchors { fill: active ? segment : undefined; margins: 1 }
        active: segment.activeFocus
        sourceComponent: Rectangle {
            radius: 4
            color: "transparent"
            border { width: 2; color: Theme.timelineFocus }
        }
    }
}
