import QtQuick
import Velmora.Style

// Copies a value, and says for a while that it did, to the eye and to assistive technology.
Button {
    id: button

    required property string title
    required property string value
    // What a longer look says; the title unless it says more.
    property string help: title
    property string copiedText: qsTr("Copied")
    readonly property bool copied: forget.running

    text: copied ? copiedText : title
    symbol: copied ? "checkmark" : "doc.on.doc"
    Accessible.name: copied ? copiedText : help
    ToolTip.visible: hovered && !copied && help !== title
    ToolTip.text: help
    onClicked: {
        pasteboard.copy(value);
        forget.restart();
    }

    Pasteboard {
        id: pasteboard
    }
    Timer {
        id: forget
        interval: Theme.acknowledgement
    }
    Item {
        visible: button.copied
        Accessible.role: Accessible.AlertMessage
        Accessible.name: button.copiedText
    }
}
