import QtQuick

// Figures that do not move when they change: each takes the room of the widest.
Item {
    id: label

    property string text: ""
    property color color: Theme.text
    property int horizontalAlignment: Text.AlignLeft

    implicitWidth: figures.width
    implicitHeight: figures.height
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    FontMetrics {
        id: metrics
        font.pixelSize: Theme.body
    }
    Row {
        id: figures
        x: label.horizontalAlignment === Text.AlignRight ? label.width - width : 0
        anchors.verticalCenter: parent.verticalCenter
        Repeater {
            model: label.text.length
            // qmllint disable unqualified
            Label {
                required property int index
                readonly property bool isFigure: text >= "0" && text <= "9"
                width: isFigure ? Math.ceil(metrics.advanceWidth("0")) : implicitWidth
                horizontalAlignment: Text.AlignHCenter
                text: label.text.charAt(index)
                color: label.color
                Accessible.ignored: true
            }
            // qmllint enable unqualified
        }
    }
}
