pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Style

// Each client that called lately: its name and version, and what it asked for.
Card {
    id: card

    required property ClientListModel clients

    implicitHeight: Math.max(rows.implicitHeight, Theme.rowHeight)

    Label {
        x: Theme.large
        height: Theme.rowHeight
        verticalAlignment: Text.AlignVCenter
        visible: repeater.count === 0
        text: qsTr("No clients connected")
        color: Theme.textSecondary
    }
    Column {
        id: rows
        width: parent.width

        Repeater {
            id: repeater
            model: card.clients

            Item {
                id: client

                required property int index
                required property string name
                required property string activity

                objectName: "client" + index
                width: rows.width
                height: content.implicitHeight + 2 * Theme.small
                Accessible.role: Accessible.StaticText
                Accessible.name: name + ", " + activity

                Column {
                    id: content
                    x: Theme.large
                    y: Theme.small
                    width: parent.width - 2 * x
                    spacing: Theme.focusWidth

                    Label {
                        objectName: "clientName"
                        width: parent.width
                        text: client.name
                        elide: Text.ElideRight
                        Accessible.ignored: true
                    }
                    Label {
                        objectName: "clientActivity"
                        width: parent.width
                        text: client.activity
                        font: Theme.caption
                        color: Theme.textSecondary
                        elide: Text.ElideRight
                        Accessible.ignored: true
                    }
                }
                Separator {
                    x: Theme.large
                    width: parent.width - 2 * x
                    visible: client.index > 0
                }
            }
        }
    }
}
