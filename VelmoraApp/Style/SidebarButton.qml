import QtQuick
import QtQuick.Templates as T

// An action at the foot of the sidebar, of less weight than the entries above it.
T.Button {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: Theme.medium
    verticalPadding: Theme.tight
    font: Theme.caption
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Keys.forwardTo: [press]

    Press {
        id: press
        control: control
        onPressed: control.clicked()
    }

    contentItem: Label {
        text: control.text
        font: control.font
        color: Theme.textSecondary
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: control.hovered || control.down ? Theme.hover : "transparent"

        FocusRing {
            anchors.margins: 0
            radius: parent.radius
            shown: control.visualFocus
        }
    }
}
