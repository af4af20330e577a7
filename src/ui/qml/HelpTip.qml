import QtQuick
import QtQuick.Templates as T

// The help text of the button that it stands in. Once the button has been used it is in the way.
T.ToolTip {
    id: tip

    required property T.AbstractButton button
    property bool used: false

    visible: button.hovered && !used && text !== ""
    delay: 600
    x: parent ? (parent.width - width) / 2 : 0
    y: parent ? parent.height + Theme.tight : 0
    margins: Theme.tight
    padding: 5
    leftPadding: Theme.gap
    rightPadding: Theme.gap
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

    Connections {
        target: tip.button
        function onPressed() { tip.used = true }
        function onHoveredChanged() { if (!tip.button.hovered) tip.used = false }
    }

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
