import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A row to choose, in a picker or in the sidebar.
T.ItemDelegate {
    id: control

    property string symbol
    property bool focusShown: visualFocus
    readonly property bool current: highlighted || checked

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: Theme.small
    verticalPadding: Theme.tight
    spacing: Theme.small
    font: Theme.body
    Accessible.name: text
    Keys.forwardTo: [press]

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
        Label {
            Layout.fillWidth: true
            text: control.text
            font: control.font
            elide: Text.ElideRight
            Accessible.ignored: true
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
