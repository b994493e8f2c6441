import QtQuick
import QtQuick.Templates as T

// A number that is changed by steps, with the two buttons or the arrow keys. It stops at its bounds.
T.SpinBox {
    id: control

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, contentItem.implicitHeight + topPadding + bottomPadding)
    leftPadding: Theme.small
    rightPadding: up.indicator.width + down.indicator.width + Theme.small
    font: Theme.body
    focusPolicy: Qt.StrongFocus

    contentItem: Label {
        text: control.displayText
        font: control.font
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        opacity: control.enabled ? 1 : Theme.disabledOpacity
        Accessible.ignored: true
    }

    down.indicator: StepArea {
        x: control.width - 2 * width
        symbol: "minus"
        pressed: control.down.pressed
        hovered: control.down.hovered
        enabled: control.enabled && control.value > control.from
    }
    up.indicator: StepArea {
        x: control.width - width
        symbol: "plus"
        pressed: control.up.pressed
        hovered: control.up.hovered
        enabled: control.enabled && control.value < control.to
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.control
        border.width: Theme.hair
        border.color: Theme.outline

        FocusRing {
            shown: control.visualFocus
        }
    }

    component StepArea: Rectangle {
        id: area

        required property string symbol
        required property bool pressed
        required property bool hovered

        implicitWidth: Theme.controlHeight
        height: parent ? parent.height : 0
        radius: Theme.controlRadius
        color: pressed || hovered ? Theme.hover : "transparent"

        Icon {
            anchors.centerIn: parent
            size: Theme.medium
            symbol: area.symbol
            opacity: area.enabled ? 1 : Theme.disabledOpacity
        }
        Rectangle {
            y: Theme.tight
            width: Theme.hair
            height: parent.height - 2 * y
            color: Theme.hairline
        }
    }
}
