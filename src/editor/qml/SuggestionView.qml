import QtQuick
import Vantro.Native

// The suggested zoom that the keyboard reaches. The bar paints it.
Item {
    id: block

    required property EditorActions actions
    required property bool shown
    required property real startX
    required property real extent
    required property string part

    visible: shown
    x: startX
    width: Math.max(extent, 2)
    activeFocusOnTab: true
    Keys.onPressed: event => {
        if ((event.modifiers & ~Qt.KeypadModifier) !== 0)
            return
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down)
            actions.keys.stepSuggestion(event.key === Qt.Key_Up ? -1 : 1)
        else if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            actions.keys.acceptSuggestion()
        else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace || event.key === Qt.Key_Escape)
            actions.keys.dismissSuggestion()
        else
            return
        event.accepted = true
    }

    Rectangle {
        visible: block.activeFocus
        anchors { fill: parent; margins: -3 }
        z: 1
        radius: 7
        color: "transparent"
        border { width: 2; color: Theme.timelineFocus }
    }
}
