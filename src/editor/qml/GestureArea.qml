import QtQuick
import Vantro.Native

// The pointer on one bar of the time line. What lies under it is found out by the gestures.
MouseArea {
    id: area

    required property BarGestures gestures
    required property int bar
    readonly property int overhang: 8 // points: handles at the ends stand half outside
    signal taken() // pressed: the keyboard is the editor's again

    anchors { fill: parent; leftMargin: -overhang; rightMargin: -overhang }
    hoverEnabled: true
    preventStealing: true
    acceptedButtons: Qt.LeftButton
    onPressed: mouse => {
        taken()
        gestures.press(bar, mouse.x - overhang, (mouse.modifiers & Qt.ShiftModifier) !== 0)
    }
    onPositionChanged: mouse => {
        if (pressed)
            gestures.move(mouse.x - overhang)
        else
            cursorShape = ({ move: Qt.OpenHandCursor, resize: Qt.SizeHorCursor, accept: Qt.PointingHandCursor })[gestures.grip(bar, mouse.x - overhang)] ?? Qt.ArrowCursor
    }
    onReleased: mouse => gestures.release(mouse.x - overhang)
    onCanceled: gestures.cancel()
    onDoubleClicked: mouse => gestures.doubleClick(bar, mouse.x - overhang)
}
