import QtQuick
import QtQuick.Templates as T

T.RadioButton {
    id: control

    // What the choice means, in a quieter voice.
    property string caption

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    verticalPadding: Theme.tight
    spacing: Theme.small
    font: Theme.body
    focusPolicy: Qt.StrongFocus

    Accessible.name: text
    Accessible.description: caption
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
        y: control.topPadding + (label.implicitHeight - height) / 2
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

    contentItem: Item {
        implicitWidth: Math.max(label.implicitWidth, explanation.implicitWidth) + label.x
        implicitHeight: label.implicitHeight + (control.caption === "" ? 0 : Theme.tight + explanation.implicitHeight)
        opacity: control.enabled ? 1 : Theme.disabledOpacity

        Label {
            id: label
            x: control.indicator.width + control.spacing
            width: Math.max(Theme.pickerWidth, parent.width - x)
            text: control.text
            font: control.font
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Label {
            id: explanation
            objectName: "choiceCaption"
            x: label.x
            y: label.implicitHeight + Theme.tight
            width: label.width
            visible: control.caption !== ""
            text: control.caption
            font: Theme.caption
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
