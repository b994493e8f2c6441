import QtQuick
import QtQuick.Templates as T

// An action at the foot of the sidebar, of less weight than the entries above it.
T.Button {
    id: control

    // Shown instead of the text where there is no room for it.
    property string shortText
    property bool narrow: false

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: narrow ? Theme.tight : Theme.medium
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
        text: control.narrow ? control.shortText : control.text
        font: control.font
        color: Theme.textSecondary
        elide: Text.ElideRight
        horizontalAlignment: control.narrow ? Text.AlignHCenter : Text.AlignLeft
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
