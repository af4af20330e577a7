import QtQuick
import Vantro.Native

// The piece of the recording that the keyboard reaches. The bar paints it.
Item {
    id: segment

    required property bool shown
    required property real startX
    required property real extent
    required property string part
    required property EditorActions actions

    visible: shown
    x: startX
    width: Math.max(extent, 1)
    activeFocusOnTab: true
    Keys.onPressed: event => {
        if (event.modifiers !== Qt.NoModifier)
            return
        const by = ({ [Qt.Key_Left]: -1, [Qt.Key_Up]: -1, [Qt.Key_Right]: 1, [Qt.Key_Down]: 1 })[event.key]
        if (by !== undefined)
            actions.keys.stepSegment(by)
        else if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            actions.keys.selectSegment()
        else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace) {
            actions.keys.selectSegment()
            actions.deleteSelected()
        } else
            return
        event.accepted = true
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
