import QtQuick
import QtQuick.Templates as T

T.CheckBox {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    spacing: Theme.small
    font: Theme.body
    focusPolicy: Qt.StrongFocus

    Accessible.name: text
    Keys.forwardTo: [press]

    Press {
        id: press
        control: control
        onPressed: {
            control.toggle();
            control.toggled();
        }
    }

    indicator: Rectangle {
        y: (control.height - height) / 2
        implicitWidth: Theme.symbol
        implicitHeight: Theme.symbol
        radius: Theme.grid
        color: control.checked ? Theme.accentFill : Theme.control
        border.width: control.checked ? 0 : Theme.hair
        border.color: Theme.outline
        opacity: control.enabled ? 1 : Theme.disabledOpacity

        Icon {
            anchors.centerIn: parent
            size: Theme.medium
            symbol: "checkmark"
            color: Theme.textOnAccent
            visible: control.checked
        }
        FocusRing {
            shown: control.visualFocus
        }
    }

    contentItem: Label {
        text: control.text
        font: control.font
        verticalAlignment: Text.AlignVCenter
        leftPadding: control.indicator.width + control.spacing
        opacity: control.enabled ? 1 : Theme.disabledOpacity
    }
}
