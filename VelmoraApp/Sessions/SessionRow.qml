import QtQuick
import QtQuick.Layouts
import Velmora.Style

// One session: what it is, whether it is busy, and what clients may do with it.
Item {
    id: row

    required property string sessionId
    required property string title
    required property string detail
    required property bool busy
    required property int permissionIndex

    required property var permissions
    required property var permissionCaptions

    signal permissionPicked(int permissionIndex)
    signal showRequested
    // One of the row's controls got the keyboard focus.
    signal entered

    objectName: "session" + sessionId
    implicitHeight: Math.max(Theme.sessionHeight, content.implicitHeight + 2 * Theme.small)
    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: detail

    RowLayout {
        id: content
        anchors.fill: parent
        anchors.leftMargin: Theme.large
        anchors.rightMargin: Theme.large
        spacing: Theme.medium

        Icon {
            symbol: "terminal"
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: Theme.focusWidth

            Label {
                objectName: "sessionTitle"
                Layout.fillWidth: true
                text: row.title
                elide: Text.ElideRight
            }
            Label {
                objectName: "sessionDetail"
                Layout.fillWidth: true
                text: row.detail
                font: Theme.caption
                color: Theme.textSecondary
                elide: Text.ElideRight
            }
        }
        Icon {
            objectName: "busy"
            visible: row.busy
            symbol: "hourglass"
            color: Theme.caution
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("Busy")

            HoverTip {
                text: qsTr("Busy: a program is running, so agents may not type.")
            }
        }
        ComboBox {
            objectName: "permissionPicker"
            Accessible.name: qsTr("Permission")
            model: row.permissions
            captions: row.permissionCaptions
            listWidth: Theme.captionedListWidth
            currentIndex: row.permissionIndex
            onActivated: index => row.permissionPicked(index)
            onActiveFocusChanged: if (activeFocus)
                row.entered()
        }
        Button {
            objectName: "showInTerminal"
            text: qsTr("Show in Terminal")
            symbol: "arrow.up.forward.app"
            display: Button.IconOnly
            onClicked: row.showRequested()
            onActiveFocusChanged: if (activeFocus)
                row.entered()
        }
    }
    Separator {
        anchors.top: parent.top
        x: Theme.large
        width: parent.width - 2 * x
    }
}
