import QtQuick
import Vantro.Native

// A zoom: from where it begins to where it has ended. Many that are too narrow to be told apart are
// one block with their number.
TimeHandle {
    id: block

    required property int index
    required property bool shown
    required property bool stop
    required property real startX
    required property real extent
    required property bool selected
    required property real startSeconds
    required property real endSeconds
    required property string label
    required property real handleWidth
    signal stepped(int row)

    visible: shown
    Accessible.ignored: !shown
    x: startX
    width: Math.max(extent, 2) // a thinner one would not be seen
    isStop: stop
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: actions.gestures.selectZoom(index)
    onWanted: to => actions.gestures.setZoom(index, BarGestures.Body, to)
    onPressed: event => {
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down)
            stepped(actions.gestures.stepZoom(index, event.key === Qt.Key_Up ? -1 : 1))
        else if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            actions.gestures.selectZoom(index)
        else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace) {
            actions.gestures.selectZoom(index)
            actions.deleteSelected()
        } else
            return
        event.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: Theme.timelineZoom
        opacity: block.selected ? 0.5 : 0.35
    }
    Rectangle {
        anchors.fill: parent
        visible: block.width > 4
        radius: 4
        color: "transparent"
        border { width: block.selected ? 2.5 : 1.5; color: Theme.timelineZoomOutline; pixelAligned: false }
    }
    Label { // not loaded when there is room: many would come at once where a wheel magnifies
        anchors.centerIn: parent
        visible: block.extent >= 44
        text: visible ? block.label : ""
        color: Theme.timelineInk
        opacity: 0.7
        font.pixelSize: Theme.caption
        Accessible.ignored: true
    }
    // qmllint disable unqualified
    Loader {
        anchors.fill: active ? block : undefined
        active: block.selected
        sourceComponent: Item {
            ZoomHandle {
                x: block.extent < 24 ? -width : 0
                width: block.handleWidth
                height: block.height
                actions: block.actions
                seconds: block.startSeconds
                name: qsTr("Start of %1").arg(block.name)
                onWanted: to => block.actions.gestures.setZoom(block.index, BarGestures.Start, to)
            }
            ZoomHandle {
                width: block.handleWidth
                height: block.height
                x: block.extent < 24 ? block.width : block.width - width
                actions: block.actions
                seconds: block.endSeconds
                name: qsTr("End of %1").arg(block.name)
                onWanted: to => block.actions.gestures.setZoom(block.index, BarGestures.End, to)
            }
            SymbolButton {
                objectName: "deleteZoom"
                anchors { right: parent.right; rightMargin: block.handleWidth + 1; verticalCenter: parent.verticalCenter }
                visible: block.width >= 88
                implicitWidth: 18
                implicitHeight: 18
                symbol: "xmark"
                symbolSize: 10
                ink: Theme.timelineInk
                help: qsTr("Delete zoom")
                onClicked: block.actions.gestures.deleteZoom(block.index)
            }
        }
    }
}
