import QtQuick
import QtQuick.Layouts
import Velmora.Style

// One request: its tool, target session, times and result.
Item {
    id: row

    required property string requestId
    required property string toolName
    required property string status
    required property string statusText
    required property int meaning
    required property string target
    required property string received
    required property string completed
    required property string client
    required property string duration
    required property string command
    required property string commandGap
    required property string output
    required property string note
    required property string error

    property bool current: false
    property bool unfolded: false
    property bool first: false

    signal foldToggled

    readonly property bool foldable: unfolded || command.cut || output.cut

    function joined(parts: var, separator: string): string {
        return parts.filter(part => part.length > 0).join(separator);
    }

    objectName: "request" + requestId
    implicitHeight: content.implicitHeight + 2 * Theme.medium
    Accessible.role: Accessible.ListItem
    Accessible.name: joined([toolName, status, target, received, completed], ", ")
    Accessible.description: statusText

    ColumnLayout {
        id: content
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.large
        anchors.rightMargin: Theme.large
        y: Theme.medium
        spacing: Theme.tight

        RowLayout {
            spacing: Theme.small

            Label {
                objectName: "toolName"
                Layout.alignment: Qt.AlignBaseline
                text: row.toolName
            }
            Label {
                objectName: "target"
                Layout.alignment: Qt.AlignBaseline
                Layout.fillWidth: true
                text: row.target
                color: Theme.textSecondary
                elide: Text.ElideRight
            }
            Badge {
                objectName: "status"
                text: row.status
                meaning: row.meaning
                help: row.statusText
            }
        }
        Label {
            objectName: "times"
            Layout.fillWidth: true
            text: row.joined([row.received, row.completed, row.duration, row.client], "  ·  ")
            font: Theme.caption
            color: Theme.textSecondary
            elide: Text.ElideRight
        }
        Label {
            objectName: "error"
            Layout.fillWidth: true
            visible: text.length > 0
            text: row.error
            font: Theme.caption
            color: Theme.danger
            wrapMode: Text.Wrap
        }
        RequestText {
            id: command
            objectName: "command"
            Layout.fillWidth: true
            Layout.topMargin: Theme.tight
            visible: text.length > 0
            label: qsTr("Command")
            text: row.command
            unfolded: row.unfolded
        }
        Label {
            objectName: "commandGap"
            Layout.fillWidth: true
            visible: text.length > 0
            text: row.commandGap
            font: Theme.caption
            color: Theme.textSecondary
            elide: Text.ElideRight
        }
        RequestText {
            id: output
            objectName: "output"
            Layout.fillWidth: true
            Layout.topMargin: Theme.tight
            visible: text.length > 0
            label: qsTr("Output")
            text: row.output
            foldedLines: 3
            unfolded: row.unfolded
        }
        Item {
            Layout.fillWidth: true
            implicitHeight: fold.visible ? fold.implicitHeight : note.implicitHeight
            visible: row.note.length > 0 || row.foldable

            Label {
                id: note
                objectName: "note"
                anchors.left: parent.left
                anchors.right: fold.visible ? fold.left : parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: row.note
                font: Theme.caption
                color: Theme.textSecondary
                elide: Text.ElideRight
            }
            Button {
                id: fold
                objectName: "foldRequest"
                anchors.right: parent.right
                flat: true
                font: Theme.caption
                visible: row.foldable
                text: row.unfolded ? qsTr("Show less") : qsTr("Show all")
                onClicked: row.foldToggled()
            }
        }
    }
    Separator {
        x: Theme.large
        width: parent.width - 2 * x
        visible: !row.first
    }
    FocusRing {
        anchors.margins: Theme.tight
        shown: row.current
    }
}
