import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A row to choose, in a picker or in the sidebar.
T.ItemDelegate {
    id: control

    property string symbol
    // What the choice means, in a quieter voice.
    property string caption
    property bool iconOnly: false
    property bool focusShown: visualFocus
    readonly property bool current: highlighted || checked

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: Theme.small
    verticalPadding: Theme.tight
    spacing: Theme.small
    font: Theme.body
    Accessible.name: text
    Accessible.description: caption
    Keys.forwardTo: [press]
    ToolTip.visible: iconOnly && hovered
    ToolTip.text: text
    ToolTip.delay: Theme.patience

    Press {
        id: press
        control: control
        onPressed: control.clicked()
    }

    contentItem: RowLayout {
        spacing: control.spacing
        opacity: control.enabled ? 1 : Theme.disabledOpacity

        Icon {
            symbol: control.symbol
            color: control.current ? Theme.accent : Theme.textSecondary
        }
        ColumnLayout {
            visible: control.text.length > 0 && !control.iconOnly
            spacing: 0

            Label {
                Layout.fillWidth: true
                text: control.text
                font: control.font
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                objectName: "choiceCaption"
                Layout.fillWidth: true
                visible: control.caption.length > 0
                text: control.caption
                font: Theme.caption
                color: Theme.textSecondary
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: {
            if (control.current)
                return Theme.selection;
            return control.hovered || control.down ? Theme.hover : "transparent";
        }

        FocusRing {
            anchors.margins: 0
            radius: parent.radius
            shown: control.focusShown
        }
    }
}
