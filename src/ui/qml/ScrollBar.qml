import QtQuick
import QtQuick.Templates as T

T.ScrollBar {
    id: bar

    implicitWidth: 8
    minimumSize: 0.1
    visible: size < 1
    Accessible.ignored: true // what has the keyboard scrolls into view by itself
    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: Theme.secondaryText
        opacity: bar.pressed ? 0.8 : bar.hovered ? 0.6 : 0.35
    }
}
