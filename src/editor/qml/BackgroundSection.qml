import QtQuick
import QtQuick.Templates as T
import Vantro.Native

// What lies behind the recording.
SettingsSection {
    id: section

    required property SidebarModel sidebar
    readonly property BackgroundGroup group: sidebar.background
    readonly property var presets: group.presets
    readonly property var names: group.names
    readonly property var previews: group.previews

    objectName: "background"
    title: qsTr("Background")
    onReset: group.reset()

    SegmentedPicker {
        objectName: "backgroundKind"
        width: parent.width
        implicitHeight: 30
        help: qsTr("Background")
        choices: [{ label: qsTr("Color"), symbol: "" }, { label: qsTr("Picture"), symbol: "" }]
        current: section.group.isPicture ? 1 : 0
        onPicked: index => section.group.isPicture = index === 1
    }
    ChoiceGrid {
        objectName: "preset"
        visible: !section.group.isPicture
        columns: 7
        columnSpacing: (parent.width - 7 * tile.width) / 6
        rowSpacing: Theme.gap
        help: qsTr("Colors")
        tiles: section.presets.map(color => ({ name: color, color: color, picture: "" }))
        current: section.presets.indexOf(section.group.color.toString().toUpperCase())
        onPicked: index => section.group.color = section.presets[index]
    }
    PushButton {
        id: more
        property bool open: false
        objectName: "moreColors"
        visible: !section.group.isPicture
        width: parent.width
        text: open ? qsTr("Fewer Colors") : qsTr("More Colors")
        onClicked: open = !open
    }
    // Components see the ids around them, which qmllint 6.4 does not know.
    // qmllint disable unqualified
    Loader {
        width: parent.width
        active: more.visible && more.open
        visible: active
        sourceComponent: ColorPicker {
            sidebar: section.sidebar
            color: section.group.color
            onPicked: color => section.group.color = color
        }
    }
    Loader {
        width: parent.width
        active: section.group.isPicture
        visible: active
        sourceComponent: ChoiceGrid {
            objectName: "picture"
            columns: 4
            spacing: 6
            tile: Qt.size((width - 3 * spacing) / 4, Math.round((width - 3 * spacing) / 6.2))
            help: qsTr("Pictures")
            tiles: section.names.map((name, index) => ({ name: name, color: "transparent", picture: section.previews[index] }))
            current: section.group.picture
            onPicked: index => section.group.picture = index
        }
    }
    // qmllint enable unqualified
    Row {
        visible: section.group.isPicture
        width: parent.width
        spacing: Theme.gap
        T.RadioButton {
            id: own
            objectName: "ownPicture"
            visible: section.group.ownPreview !== ""
            width: 46
            height: Theme.controlHeight
            hoverEnabled: true
            focusPolicy: Qt.TabFocus
            autoExclusive: false
            checked: section.group.isOwn
            Accessible.name: section.group.ownName
            Accessible.onPressAction: if (enabled) clicked()
            Accessible.onToggleAction: if (enabled) clicked()
            onClicked: {
                section.group.useOwn()
                checked = Qt.binding(() => section.group.isOwn)
            }
            contentItem: Tile {
                picture: section.group.ownPreview
                chosen: section.group.isOwn
                hovered: own.hovered
            }
            background: Item {
                FocusRing { control: own; cornerRadius: 5 }
            }
        }
        PushButton {
            objectName: "choosePicture"
            width: parent.width - (own.visible ? own.width + parent.spacing : 0)
            text: qsTr("Choose Picture...")
            help: qsTr("Or drop one here")
            onClicked: section.group.chooseOwn()
        }
    }
    Label {
        objectName: "pictureProblem"
        visible: text !== ""
        width: parent.width
        text: section.group.problem
        wrapMode: Text.Wrap
        font.pixelSize: Theme.caption
        color: Theme.warning
    }
}
