import QtQuick
import QtQuick.Templates as T

// One choice out of a list that drops down.
T.ComboBox {
    id: box

    property string help: ""

    implicitWidth: 190
    implicitHeight: Theme.controlHeight
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.name: help
    Accessible.description: displayText
    Accessible.onPressAction: popup.visible ? popup.close() : popup.open()

    contentItem: Label {
        leftPadding: box.mirrored ? 24 : 9
        rightPadding: box.mirrored ? 9 : 24
        verticalAlignment: Text.AlignVCenter
        text: box.displayText
        color: box.enabled ? Theme.text : Theme.disabledText
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    indicator: Symbol {
        x: box.mirrored ? 7 : box.width - width - 7
        y: (box.height - height) / 2
        name: "chevron.down"
        size: 12
        color: box.enabled ? Theme.secondaryText : Theme.disabledText
    }
    background: Rectangle {
        radius: Theme.radius
        color: box.down ? Theme.sunken : Theme.surface
        border.width: 1
        border.color: Theme.border
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.hover
            visible: box.hovered && !box.down
        }
        FocusRing { control: box }
    }
    // qmllint disable unqualified
    delegate: T.ItemDelegate {
        id: entry
        required property string modelData
        required property int index
        width: box.width - 8
        height: 28
        hoverEnabled: true
        Accessible.name: modelData
        Accessible.onPressAction: if (enabled) clicked()
        contentItem: Label {
            leftPadding: 8
            verticalAlignment: Text.AlignVCenter
            text: entry.modelData
            font.weight: entry.index === box.currentIndex ? Font.DemiBold : Font.Normal
            Accessible.ignored: true
        }
        background: Rectangle {
            radius: Theme.radius - 3
            color: box.highlightedIndex === entry.index ? Theme.pressed : "transparent"
        }
    }
    // qmllint enable unqualified
    popup: T.Popup {
        y: box.height + 2
        width: box.width
        height: list.contentHeight + 8
        padding: 4
        contentItem: ListView {
            id: list
            clip: true
            model: box.popup.visible ? box.delegateModel : null
            currentIndex: box.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
        }
        background: Rectangle {
            radius: Theme.radius
            color: Theme.surface
            border.width: 1
            border.color: Theme.border
        }
    }
}
