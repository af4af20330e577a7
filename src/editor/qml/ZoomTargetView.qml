import QtQuick
import QtQuick.Window
import Vantro.Native

// The center of the selected zoom on the picture: dragged, or moved by the arrow keys, with Shift
// finely. Fills what the picture may take; stands only where the picture is.
Item {
    id: area

    required property EditorPreview player
    required property ZoomTarget target

    Item {
        id: picture
        anchors.centerIn: parent
        width: area.player.pictureSize.width / Screen.devicePixelRatio
        height: area.player.pictureSize.height / Screen.devicePixelRatio

        Item {
            id: handle
            objectName: "zoomTarget"
            visible: area.target.shown && x > -width && x < picture.width && y > -height && y < picture.height
            x: area.target.place.x * picture.width - width / 2
            y: area.target.place.y * picture.height - height / 2
            width: 36
            height: 36
            activeFocusOnTab: true
            Accessible.role: Accessible.Grip
            Accessible.name: qsTr("Zoom center")
            Accessible.description: area.target.text
            Accessible.focusable: true
            Keys.onPressed: event => {
                const way = {
                    [Qt.Key_Left]: [-1, 0], [Qt.Key_Right]: [1, 0],
                    [Qt.Key_Up]: [0, -1], [Qt.Key_Down]: [0, 1]
                }[event.key]
                if (way === undefined)
                    return
                event.accepted = true
                if (!event.isAutoRepeat)
                    area.target.begin()
                const step = event.modifiers & Qt.ShiftModifier ? 1 : 10 // points
                area.target.moveBy(way[0] * step, way[1] * step)
            }
            Keys.onReleased: event => {
                if (!event.isAutoRepeat)
                    area.target.end()
            }

            // Dark and light rings, one of which stands out from any picture.
            Rectangle {
                anchors.fill: parent
                anchors.margins: 3
                radius: width / 2
                color: "#40000000"
                border { width: 4; color: "#b0000000" }
            }
            Rectangle {
                anchors.fill: parent
                anchors.margins: 4
                radius: width / 2
                color: "transparent"
                border { width: 2; color: mouse.pressed || handle.activeFocus ? Theme.focusRing : "#ffffff" }
            }
            Rectangle {
                anchors.centerIn: parent
                width: 8
                height: 8
                radius: 4
                color: "#ffffff"
                border { width: 1; color: "#b0000000" }
            }
            Rectangle {
                anchors.fill: parent
                radius: width / 2
                color: "transparent"
                border { width: 2; color: "#ffffff" }
                visible: handle.activeFocus
            }
            MouseArea {
                id: mouse
                property point grip // from the handle's middle
                anchors.fill: parent
                cursorShape: Qt.SizeAllCursor
                preventStealing: true
                onPressed: event => {
                    grip = Qt.point(event.x - width / 2, event.y - height / 2)
                    area.target.begin()
                }
                onPositionChanged: event => {
                    const at = mapToItem(picture, event.x - grip.x, event.y - grip.y)
                    area.target.moveTo(Qt.point(at.x / picture.width, at.y / picture.height))
                }
                onReleased: area.target.end()
                onCanceled: area.target.end()
            }
        }
    }
}
