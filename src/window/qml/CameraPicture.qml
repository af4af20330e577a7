import QtQuick
import Vantro.Native

// What the camera sees, or why it shows nothing.
Rectangle {
    id: root

    required property CameraView camera

    visible: camera.shown
    radius: Theme.radius
    color: Theme.stage
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Camera picture")
    Accessible.description: root.camera.problem

    PreviewItem {
        id: picture
        anchors.fill: parent
        stream: root.camera.pictures
        transform: Scale {
            origin.x: picture.width / 2
            xScale: root.camera.mirrored ? -1 : 1
        }
    }
    Label {
        anchors { fill: parent; margins: Theme.gap }
        objectName: "cameraProblem"
        visible: text !== ""
        text: root.camera.problem
        color: Theme.stageText
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
