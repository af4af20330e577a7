import QtQuick
import QtQuick.Templates as T

// The help text of the control that it stands in.
T.ToolTip {
    id: tip

    property bool wanted: false

    visible: wanted && text !== ""
    delay: 600
    x: parent ? (parent.width - width) / 2 : 0
    y: parent ? parent.height + Theme.tight : 0
    margins: Theme.tight
    padding: 5
    leftPadding: Theme.gap
    rightPadding: Theme.gap
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

    contentItem: Label {
        text: tip.text
        font.pixelSize: Theme.caption
        color: Theme.dark ? Theme.text : "#ffffff"
    }
    background: Rectangle {
        radius: 5
        color: Theme.dark ? "#3d3d41" : "#e6202022"
    }
}
