import QtQuick
import QtQuick.Templates as T

// A line of help under the item that it stands in.
T.ToolTip {
    id: tip

    property bool shown: false
    readonly property real widest: 300

    visible: shown && text !== ""
    delay: 600
    x: parent ? (parent.width - width) / 2 : 0
    y: parent ? parent.height + Theme.tight : 0
    margins: Theme.tight
    padding: 5
    leftPadding: Theme.gap
    rightPadding: Theme.gap
    implicitWidth: Math.min(contentItem.implicitWidth, widest) + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

    contentItem: Label {
        objectName: "tipText"
        text: tip.text
        wrapMode: Text.Wrap
        font.pixelSize: Theme.caption
        color: Theme.tipText
    }
    background: Rectangle {
        radius: 5
        color: Theme.tip
    }
}
