import QtQuick
import Vantro.Native

// How loud a sound is, along the longer side: the level now, and a mark where it was highest.
Rectangle {
    id: root

    required property SourceMeter meter // null: none
    required property string name
    readonly property int level: meter !== null ? meter.level : -60
    readonly property int peak: meter !== null ? meter.peak : -60
    readonly property bool upright: height > width
    readonly property real length: upright ? height : width

    function along(decibels: int): real {
        return Math.round(root.length * (decibels + 60) / 60)
    }

    visible: meter !== null && meter.shown
    radius: Math.min(width, height) / 2
    color: Theme.groove
    Accessible.role: Accessible.ProgressBar
    Accessible.name: name
    Accessible.description: qsTr("%1 dB").arg(level)

    Rectangle {
        objectName: "levelBar"
        readonly property real extent: root.along(root.level)
        x: root.upright || !LayoutMirroring.enabled ? 0 : root.width - width
        y: root.upright ? root.height - height : 0
        width: root.upright ? root.width : extent
        height: root.upright ? extent : root.height
        radius: root.radius
        color: root.level >= -1 ? Theme.record : Theme.accent
    }
    Rectangle {
        readonly property real place: Math.max(root.along(root.peak) - 1, 0)
        visible: root.peak > -60
        x: root.upright ? 0 : LayoutMirroring.enabled ? root.width - place - 1 : place
        y: root.upright ? root.height - place - 1 : 0
        width: root.upright ? root.width : 1
        height: root.upright ? 1 : root.height
        color: Theme.text
    }
}
