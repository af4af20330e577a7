import QtQuick
import Vantro.Native

// A setting that is one of a few values.
SettingsRow {
    id: row

    required property SettingsChoice choice

    ChoiceBox {
        objectName: row.objectName + "Choice"
        width: parent.width
        help: row.label
        model: row.choice.names
        currentIndex: row.choice.current
        onActivated: index => {
            row.choice.current = index
            currentIndex = Qt.binding(() => row.choice.current)
        }
    }
}
