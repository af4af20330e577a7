import QtQuick
import QtQuick.Window

// A small picture or color that can be chosen. The picture comes when it has been read.
Item {
    id: tile

    property color color: "transparent"
    property string picture: ""
    property bool chosen: false
    property bool hovered: false

    Rectangle {
        anchors.fill: parent
        radius: 3
        color: tile.picture === "" ? tile.color : Theme.sunken
    }
    Image {
        anchors { fill: parent; margins: 1 }
        visible: tile.picture !== ""
        asynchronous: true
        fillMode: Image.PreserveAspectCrop
        sourceSize {
            width: Math.ceil(tile.width * Screen.devicePixelRatio)
            height: Math.ceil(tile.height * Screen.devicePixelRatio)
        }
        source: tile.picture
    }
    Rectangle {
        anchors.fill: parent
        radius: 3
        color: "transparent"
        border.width: tile.chosen ? 2 : 1
        border.color: tile.chosen ? Theme.accent : tile.hovered ? Theme.secondaryText : Theme.border
    }
    Rectangle { // sets the mark off from any picture
        anchors { fill: parent; margins: 2 }
        visible: tile.chosen
        radius: 1
        color: "transparent"
        border.width: 1
        border.color: Theme.window
    }
}
