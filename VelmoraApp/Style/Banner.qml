import QtQuick
import QtQuick.Layouts

// A warning that stays until its cause is gone.
Rectangle {
    id: banner

    property alias symbol: icon.symbol
    property alias text: label.text
    property color meaning: Theme.caution
    // Whether the user can dismiss it.
    property bool dismissible: false
    // What the user may do about it, as the text of a button; none when it is empty.
    property alias actionText: action.text
    property alias actionEnabled: action.enabled

    signal dismissed
    signal actionRequested

    implicitHeight: row.implicitHeight + 2 * Theme.medium
    radius: Theme.cardRadius
    color: Theme.tint(meaning)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: label.text

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.margins: Theme.medium
        spacing: Theme.medium

        Icon {
            id: icon
            color: banner.meaning
        }
        Label {
            id: label
            Layout.fillWidth: true
            Layout.minimumWidth: Theme.pickerWidth
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Button {
            id: action
            objectName: "bannerAction"
            visible: text.length > 0
            onClicked: banner.actionRequested()
        }
        Button {
            objectName: "dismissBanner"
            visible: banner.dismissible
            text: qsTr("Dismiss")
            onClicked: banner.dismissed()
        }
    }
}
