import QtQuick
import QtQuick.Templates as T

T.TextField {
    id: control

    implicitWidth: Theme.pickerWidth
    implicitHeight: Math.max(Theme.controlHeight, contentHeight + topPadding + bottomPadding)
    leftPadding: Theme.small
    rightPadding: Theme.small
    topPadding: Theme.tight
    bottomPadding: Theme.tight
    font: Theme.body
    color: Theme.text
    placeholderTextColor: Theme.textSecondary
    selectionColor: Theme.accentFill
    selectedTextColor: Theme.textOnAccent
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    Accessible.name: placeholderText

    Label {
        x: control.leftPadding
        width: control.width - control.leftPadding - control.rightPadding
        height: control.height
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        text: control.placeholderText
        color: control.placeholderTextColor
        visible: control.length === 0 && control.preeditText.length === 0
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.control
        border.width: Theme.hair
        border.color: Theme.outline

        // A field shows the keyboard focus however it got it.
        FocusRing {
            shown: control.activeFocus
        }
    }
}
