import QtQuick
import QtQuick.Templates as T

T.RadioButton {
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
        takesReturn: false
        onPressed: {
            if (control.checked)
                return;
            control.checked = true;
            control.toggled();
        }
    }

    indicator: Rectangle {
        y: (control.height - height) / 2
        implicitWidth: Theme.symbol
        implicitHeight: Theme.symbol
        radius: height / 2
        color: control.checked ? Theme.accentFill : Theme.control
        border.width: control.checked ? 0 : Theme.hair
        border.color: Theme.outline
        opacity: control.enabled ? 1 : Theme.disabledOpacity

        Rectangle {
            anchors.centerIn: parent
            width: Theme.small - Theme.focusWidth
            height: width
            radius: width / 2
            color: Theme.knob
            visible: control.checked
        }
        FocusRing {
            radius: parent.radius + Theme.focusWidth + Theme.hair
            shown: control.visualFocus
        }
    }

    contentItem: Label {
        text: control.text
        font: control.font
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        leftPadding: control.indicator.width + control.spacing
        opacity: control.enabled ? 1 : Theme.disabledOpacity
    }
}
