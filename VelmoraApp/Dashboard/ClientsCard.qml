pragma ComponentBehavior: Bound
import QtQuick
import Velmora.Style

// Each connected client's name and version.
Card {
    id: card

    required property var clients

    implicitHeight: rows.implicitHeight

    Column {
        id: rows
        width: parent.width

        Repeater {
            model: card.clients.length > 0 ? card.clients : [qsTr("No clients connected")]

            Label {
                required property int index
                required property string modelData

                objectName: "client" + index
                width: rows.width
                height: Theme.rowHeight
                leftPadding: Theme.large
                rightPadding: Theme.large
                verticalAlignment: Text.AlignVCenter
                text: modelData
                elide: Text.ElideRight
                color: card.clients.length > 0 ? Theme.text : Theme.textSecondary

                Separator {
                    x: Theme.large
                    width: parent.width - 2 * x
                    visible: parent.index > 0
                }
            }
        }
    }
}
