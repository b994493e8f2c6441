import QtQuick
import QtQuick.Templates as T

T.TabButton {
    id: control

    property string symbol

    width: implicitWidth
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: Theme.medium
    verticalPadding: Theme.tight
    spacing: Theme.small
    font: Theme.body
    focusPolicy: Qt.StrongFocus

    Accessible.name: text
    Keys.forwardTo: [press]

    Press {
        id: press
        control: control
        onPressed: control.checked = true
    }

    contentItem: Row {
        spacing: control.spacing

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: control.symbol
            color: control.checked ? Theme.accent : Theme.textSecondary
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: control.text
            textFormat: Text.PlainText
            font: control.font
            color: Theme.text
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: control.checked ? Theme.control : control.hovered ? Theme.hover : "transparent"
        border.width: control.checked ? Theme.hair : 0
        border.color: Theme.outline

        FocusRing {
            shown: control.visualFocus
        }
    }
}
