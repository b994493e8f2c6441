pragma ComponentBehavior: Bound
import QtQuick
import Velmora.Style

// The session policies below each other, each with what it means. The arrow keys choose.
Column {
    id: choices

    required property var labels
    required property var captions
    required property int currentIndex
    // Not the width that a layout gives: lines that wrap would change it again.
    required property real lineWidth

    signal picked(int index)

    spacing: Theme.tight
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Session policy")
    Keys.onUpPressed: choose(currentIndex - 1)
    Keys.onDownPressed: choose(currentIndex + 1)

    function takeKeyboard() {
        buttons.itemAt(currentIndex)?.forceActiveFocus(Qt.TabFocusReason);
    }
    function choose(index: int) {
        picked(index);
        takeKeyboard();
    }

    Repeater {
        id: buttons
        model: choices.labels

        RadioButton {
            required property int index
            required property string modelData

            objectName: "policyChoice" + index
            width: choices.lineWidth
            text: modelData
            caption: choices.captions[index]
            checked: choices.currentIndex === index
            onToggled: choices.picked(index)
        }
    }
}
