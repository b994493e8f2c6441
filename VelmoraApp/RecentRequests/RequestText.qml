import QtQuick
import QtQuick.Layouts
import Velmora.Style

// A command or output under its label, as it was in the terminal. Folded, it shows only a few lines.
ColumnLayout {
    id: block

    property alias label: nameLabel.text
    property alias text: code.text
    property int foldedLines: 1
    property bool unfolded: false
    readonly property bool cut: code.truncated

    spacing: Theme.tight

    Label {
        id: nameLabel
        font: Theme.caption
        color: Theme.textSecondary
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: code.implicitHeight + 2 * Theme.small
        radius: Theme.controlRadius
        color: Theme.well

        Label {
            id: code
            x: Theme.small
            y: Theme.small
            width: parent.width - 2 * Theme.small
            font: Theme.code
            wrapMode: Text.WrapAnywhere
            maximumLineCount: block.unfolded ? Theme.mostLines : block.foldedLines
            Accessible.name: nameLabel.text + ": " + text
        }
    }
}
