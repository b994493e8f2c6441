import QtQuick

// Shows the keyboard focus around its parent.
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
