import QtQuick
import QtQuick.Templates as T

// One choice out of many small pictures or colors. Arrow keys move it.
Grid {
    id: grid

    // List of { name, color, picture }: an empty picture is none.
    required property var tiles
    required property int current // -1: none of them
    property size tile: Qt.size(28, 28)
    property string help: ""
    readonly property bool mirrored: LayoutMirroring.enabled
    signal picked(int index)

    Accessible.role: Accessible.Grouping
    Accessible.name: help

    function step(index: int) {
        if (index < 0 || index >= tiles.length)
            return
        picked(index)
        items.itemAt(index).forceActiveFocus(Qt.TabFocusReason)
    }

    Repeater {
        id: items
        model: grid.tiles
        // qmllint disable unqualified
        T.RadioButton {
            id: choice
            required property var modelData
            required property int index
            readonly property bool isCurrent: index === grid.current

            objectName: grid.objectName + index
            width: grid.tile.width
            height: grid.tile.height
            hoverEnabled: true
            focusPolicy: index === Math.max(grid.current, 0) || activeFocus ? Qt.TabFocus : Qt.NoFocus
            autoExclusive: false
            checked: isCurrent
            Accessible.name: modelData.name
            Accessible.onPressAction: if (enabled) clicked()
            Accessible.onToggleAction: if (enabled) clicked()
            onClicked: {
                grid.picked(index)
                checked = Qt.binding(() => isCurrent) // also where that was refused
            }
            Keys.onReturnPressed: grid.picked(index)
            Keys.onEnterPressed: grid.picked(index)
            Keys.onSpacePressed: grid.picked(index)
            Keys.onLeftPressed: grid.step(index + (grid.mirrored ? 1 : -1))
            Keys.onRightPressed: grid.step(index + (grid.mirrored ? -1 : 1))
            Keys.onUpPressed: grid.step(index - grid.columns)
            Keys.onDownPressed: grid.step(index + grid.columns)
            contentItem: Tile {
                color: choice.modelData.color
                picture: choice.modelData.picture
                chosen: choice.isCurrent
                hovered: choice.hovered
            }
            background: Item {
                FocusRing { control: choice; cornerRadius: 5 }
            }
        }
        // qmllint enable unqualified
    }
}
