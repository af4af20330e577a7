import QtQuick

// An end of a zoom's block.
TimeHandle {
    required property string part

    corner: 2
    Rectangle {
        anchors.centerIn: parent
        width: 2
        height: parent.height / 2
        radius: 1
        color: Theme.timelineInk
        opacity: 0.7
    }
}
