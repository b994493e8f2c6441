import QtQuick
import QtQuick.Templates as T

T.Switch {
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
        x: control.text.length > 0 ? control.width - width - control.rightPadding : 0
        anchors.verticalCenter: parent ? parent.verticalCenter : undefined
        implicitWidth: Theme.switchWidth
        implicitHeight: Theme.switchHeight
        radius: height / 2
        color: control.checked ? Theme.accentFill : Theme.switchOff
        opacity: control.enabled ? 1 : Theme.disabledOpacity

        Behavior on color  {
            ColorAnimation {
                duration: Theme.quick
            }
        }

        Rectangle {
            x: control.checked ? parent.width - width - Theme.focusWidth : Theme.focusWidth
            y: Theme.focusWidth
            width: parent.height - 2 * Theme.focusWidth
            height: width
            radius: width / 2
            color: Theme.knob

            Behavior on x  {
                NumberAnimation {
                    duration: Theme.quick
                }
            }
        }

        FocusRing {
            shown: control.visualFocus
            radius: parent.radius + Theme.focusWidth + Theme.hair
        }
    }

    contentItem: Label {
        text: control.text
        font: control.font
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        rightPadding: control.indicator.width + (text.length > 0 ? control.spacing : 0)
        opacity: control.enabled ? 1 : Theme.disabledOpacity
    }
}
