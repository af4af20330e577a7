import QtQuick
import QtQuick.Window

// One of the program's own symbols, by name, in any color.
Image {
    required property string name
    property color color: Theme.text
    property real size: 18

    width: size
    height: size
    sourceSize {
        width: Math.round(size * Screen.devicePixelRatio)
        height: Math.round(size * Screen.devicePixelRatio)
    }
    source: "image://symbol/" + name + "/" + color.toString().slice(-6)
    opacity: color.a
    asynchronous: false
}
