import QtQuick
import QtQuick.Layouts
import Velmora.Style

// The column headers of the session list.
RowLayout {
    id: columns

    spacing: Theme.medium
    height: Theme.headerHeight

    Label {
        Layout.fillWidth: true
        Layout.leftMargin: Theme.large
        text: qsTr("Session")
        font: Theme.caption
        color: Theme.textSecondary
    }
    Label {
        Layout.preferredWidth: Theme.pickerWidth
        Layout.rightMargin: Theme.large + Theme.medium + Theme.controlHeight
        text: qsTr("Permission")
        font: Theme.caption
        color: Theme.textSecondary
    }
}
