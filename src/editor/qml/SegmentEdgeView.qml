import QtQuick

// Where a kept piece begins or ends. It is dragged by what lies within `handleWidth` of it.
TimeHandle {
    id: edge

    required property int index
    required property bool shown
    required property bool stop
    required property real startX
    required property real room // to the nearest other edge
    required property int side // of the piece that it belongs to: 1 right, -1 left, 0 both
    required property real handleWidth

    visible: shown
    Accessible.ignored: !shown
    x: startX - width / 2
    width: handleWidth
    corner: 2
    isStop: stop
    onWanted: to => actions.gestures.setEdge(index, to)

    // Sets it off from bright pictures.
    Rectangle {
        visible: edge.room >= 8
        x: bar.x - 1
        width: bar.width + 2
        height: parent.height
        radius: bar.radius + 1
        color: Theme.timelineGround
    }
    Rectangle {
        id: bar
        x: (parent.width - width) / 2 + edge.side * width / 2
        width: edge.side === 0 ? Math.min(2, edge.room / 4) : Math.min(5, edge.room / 4)
        height: parent.height
        radius: edge.side === 0 ? 0 : 2
        color: Theme.timelineHandle
    }
    Rectangle {
        visible: edge.room >= 20
        anchors.centerIn: parent
        anchors.horizontalCenterOffset: edge.side * 2.5
        width: edge.side === 0 ? 4 : 1
        height: 14
        radius: 2
        color: edge.side === 0 ? Theme.timelineHandle : Theme.timelineGround
    }
}
