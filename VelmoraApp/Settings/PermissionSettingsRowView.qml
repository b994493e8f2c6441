import QtQuick
import QtQuick.Layouts
import Velmora.Style

// One permission: what it is for, and the button that opens its pane.
ColumnLayout {
    id: row

    required property var modelData

    signal openRequested

    spacing: Theme.medium

    Separator {
        Layout.fillWidth: true
    }
    RowLayout {
        spacing: Theme.medium

        Icon {
            Layout.alignment: Qt.AlignTop
            symbol: row.modelData.attention ? "exclamationmark.triangle" : row.modelData.icon
            color: row.modelData.attention ? Theme.caution : Theme.accent
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: Theme.pickerWidth
            spacing: Theme.tight

            Label {
                objectName: "permissionTitle"
                text: row.modelData.title
            }
            SettingsCaption {
                objectName: "permissionInstruction"
                text: row.modelData.instruction
            }
        }
        Button {
            objectName: "openPermission"
            visible: text.length > 0
            text: row.modelData.buttonTitle
            onClicked: row.openRequested()
        }
    }
}
