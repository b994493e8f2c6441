import QtQuick
import QtQuick.Layouts
import Velmora.Style

// One line of the status: a name and its current value.
Item {
    id: row

    property alias symbol: icon.symbol
    property alias label: label.text
    property alias value: value.text
    property alias valueColor: value.color
    // Smaller text below the value.
    property alias detail: detail.text
    property bool last: false

    implicitHeight: content.implicitHeight + 2 * Theme.medium
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text + ": " + value.text

    RowLayout {
        id: content
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: Theme.large
        anchors.rightMargin: Theme.large
        spacing: Theme.small

        Icon {
            id: icon
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: (label.implicitHeight - height) / 2
        }
        Label {
            id: label
            Layout.alignment: Qt.AlignTop
            color: Theme.textSecondary
            Accessible.ignored: true
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: Theme.pickerWidth
            Layout.leftMargin: Theme.wide
            spacing: Theme.tight

            Label {
                id: value
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignRight
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            Label {
                id: detail
                Layout.fillWidth: true
                visible: text.length > 0
                horizontalAlignment: Text.AlignRight
                wrapMode: Text.Wrap
                font: Theme.caption
                color: Theme.textSecondary
            }
        }
    }
    Separator {
        anchors.bottom: parent.bottom
        x: Theme.large
        width: parent.width - 2 * x
        visible: !row.last
    }
}
