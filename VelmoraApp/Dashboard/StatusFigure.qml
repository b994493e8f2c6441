import QtQuick
import QtQuick.Layouts
import Velmora.Style

// One number or word of the status, large enough to read at a glance.
Card {
    id: figure

    property alias symbol: icon.symbol
    property alias label: label.text
    property alias value: value.text
    property alias valueColor: value.color

    Layout.fillWidth: true
    // All figures in a row have the same width.
    Layout.preferredWidth: 1
    implicitHeight: content.implicitHeight + 2 * Theme.large
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text + ": " + value.text

    ColumnLayout {
        id: content
        anchors.fill: parent
        anchors.margins: Theme.large
        spacing: Theme.tight

        RowLayout {
            spacing: Theme.small

            Icon {
                id: icon
            }
            Label {
                id: label
                Layout.fillWidth: true
                color: Theme.textSecondary
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
        Label {
            id: value
            Layout.fillWidth: true
            font: Theme.figure
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
