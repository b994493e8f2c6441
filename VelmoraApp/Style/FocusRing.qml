import QtQuick

// Shows where the keyboard is: fills its parent, the control that has it.
Rectangle {
    required property bool shown

    anchors.fill: parent
    anchors.margins: -Theme.focusWidth - Theme.hair
    radius: Theme.controlRadius + Theme.focusWidth + Theme.hair
    color: "transparent"
    border.width: Theme.focusWidth
    border.color: Theme.accent
    visible: shown
}
