import QtQuick
import QtQuick.Templates as T

// `highlighted` marks the main action, `destructive` one that cannot be undone. With the display IconOnly the text is
// still the accessible name and becomes the tool tip. A `flat` one looks like a link in a text.
T.Button {
    id: control

    property string symbol
    property bool destructive: false

    readonly property color ink: {
        if (highlighted)
            return Theme.textOnAccent;
        return destructive ? Theme.danger : flat ? Theme.accent : Theme.text;
    }
    readonly property color fill: destructive ? Theme.dangerFill : Theme.accentFill
    readonly property color fillPressed: destructive ? Theme.dangerFillPressed : Theme.accentFillPressed

    implicitWidth: Math.max(implicitHeight, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: display === T.AbstractButton.IconOnly ? Theme.tight : flat ? Theme.small : Theme.medium
    verticalPadding: Theme.tight
    spacing: Theme.small
    font: Theme.body
    focusPolicy: Qt.StrongFocus

    Accessible.name: text
    Keys.forwardTo: [press]

    ToolTip.visible: display === T.AbstractButton.IconOnly && hovered
    ToolTip.text: text
    ToolTip.delay: Theme.patience

    Press {
        id: press
        control: control
        onPressed: control.clicked()
    }

    contentItem: Item {
        implicitWidth: content.implicitWidth
        implicitHeight: content.implicitHeight

        Row {
            id: content
            anchors.centerIn: parent
            spacing: control.spacing
            opacity: control.enabled ? 1 : Theme.disabledOpacity

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: control.symbol
                color: control.highlighted || control.destructive || control.flat ? control.ink : Theme.textSecondary
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.display !== T.AbstractButton.IconOnly
                text: control.text
                textFormat: Text.PlainText
                font: control.font
                color: control.ink
            }
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        border.width: control.highlighted || control.flat ? 0 : Theme.hair
        border.color: Theme.outline
        color: {
            if (control.highlighted)
                return control.down ? control.fillPressed : control.fill;
            if (control.flat)
                return control.down || control.hovered ? Theme.hover : "transparent";
            return control.down || control.hovered ? Theme.controlPressed : Theme.control;
        }
        opacity: control.enabled ? 1 : Theme.disabledOpacity

        FocusRing {
            shown: control.visualFocus
        }
    }
}
