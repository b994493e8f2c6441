import QtQuick
import QtQuick.Layouts
import Velmora.Style

// One number or word of the status, large enough to read at a glance, and what it means.
Card {
    id: figure

    property alias symbol: icon.symbol
    property alias label: label.text
    property alias value: value.text
    property alias valueColor: value.color
    property alias caption: caption.text

    Layout.fillWidth: true
    // All figures in a row have the same width.
    Layout.preferredWidth: 1
    implicitHeight: content.implicitHeight + 2 * Theme.large
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text + ": " + value.text
    Accessible.description: caption.text

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
        Label {
            id: caption
            Layout.fillWidth: true
            Layout.fillHeight: true
            font: Theme.caption
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
