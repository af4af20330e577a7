import QtQuick
import Vantro.Native

// The zoom that the keyboard reaches: from where it begins to where it has ended. The bar paints it.
TimeHandle {
    id: block

    required property bool shown
    required property real startX
    required property real extent
    required property bool selected
    required property real startSeconds
    required property real endSeconds
    required property string name
    required property string part
    required property real handleWidth

    visible: shown
    x: startX
    width: Math.max(extent, 2) // a thinner one would not be seen
    onWanted: to => actions.keys.setZoom(BarKeys.Body, to)
    onPressed: event => {
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down)
            actions.keys.stepZoom(event.key === Qt.Key_Up ? -1 : 1)
        else if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            actions.keys.selectZoom()
        else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace) {
            actions.keys.selectZoom()
            actions.deleteSelected()
        } else
            return
        event.accepted = true
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
                part: block.part + " start"
                onWanted: to => block.actions.keys.setZoom(BarKeys.Start, to)
            }
            ZoomHandle {
                width: block.handleWidth
                height: block.height
                x: block.extent < 24 ? block.width : block.width - width
                actions: block.actions
                seconds: block.endSeconds
                part: block.part + " end"
                onWanted: to => block.actions.keys.setZoom(BarKeys.End, to)
            }
            SymbolButton {
                readonly property string part: block.part + " delete"
                objectName: "deleteZoom"
                anchors { right: parent.right; rightMargin: block.handleWidth + 1; verticalCenter: parent.verticalCenter }
                visible: block.width >= 88
                implicitWidth: 18
                implicitHeight: 18
                symbol: "xmark"
                symbolSize: 10
                ink: Theme.timelineInk
                help: qsTr("Delete zoom")
                onClicked: block.actions.keys.deleteZoom()
            }
        }
    }
}
