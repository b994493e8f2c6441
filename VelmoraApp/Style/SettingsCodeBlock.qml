import QtQuick
import QtQuick.Layouts

// A text to copy: read-only, in the fixed-width font. Mouse and keyboard can select it.
Rectangle {
    id: block

    property alias text: edit.text
    required property string name

    Layout.fillWidth: true
    implicitHeight: edit.implicitHeight
    radius: Theme.controlRadius
    color: Theme.well

    TextEdit {
        id: edit
        objectName: block.objectName + "Text"
        width: parent.width
        padding: Theme.medium
        readOnly: true
        selectByMouse: true
        activeFocusOnTab: true
        persistentSelection: false
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.WrapAnywhere
        font: Theme.code
        color: Theme.text
        selectionColor: Theme.accentFill
        selectedTextColor: Theme.textOnAccent
        Accessible.role: Accessible.EditableText
        Accessible.readOnly: true
        Accessible.name: block.name
        // Tab leads on: nothing can be typed here.
        KeyNavigation.priority: KeyNavigation.BeforeItem

        FocusRing {
            shown: edit.activeFocus
        }
    }
}
