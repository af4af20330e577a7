import QtQuick
import Vantro.Native

// How strong a zoom is and how long it lasts.
Column {
    id: rows

    required property SidebarModel sidebar
    required property real level
    required property real leadIn
    required property real leadOut
    signal levelEdited(real value)
    signal leadInEdited(real value)
    signal leadOutEdited(real value)

    spacing: Theme.gap

    ValueRow {
        objectName: rows.objectName + "Level"
        width: parent.width
        sidebar: rows.sidebar
        label: qsTr("Level")
        value: rows.level
        from: 1
        to: 4
        usual: 1.5
        decimals: 1
        unit: "x"
        onEdited: value => rows.levelEdited(value)
    }
    ValueRow {
        objectName: rows.objectName + "LeadIn"
        width: parent.width
        sidebar: rows.sidebar
        label: qsTr("Before the click")
        value: rows.leadIn
        from: 0.1
        to: 10
        usual: 1.5
        decimals: 1
        unit: " s"
        logarithmic: true
        onEdited: value => rows.leadInEdited(value)
    }
    ValueRow {
        objectName: rows.objectName + "LeadOut"
        width: parent.width
        sidebar: rows.sidebar
        label: qsTr("After the click")
        value: rows.leadOut
        from: 0.1
        to: 10
        usual: 1.5
        decimals: 1
        unit: " s"
        logarithmic: true
        onEdited: value => rows.leadOutEdited(value)
    }
}
