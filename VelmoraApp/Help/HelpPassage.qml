pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Style

// A text to read, or one to copy.
Item {
    id: place

    required property var passage
    required property HelpViewModel viewModel

    implicitHeight: childrenRect.height

    Label {
        width: place.width
        visible: !place.passage.isCode
        text: place.passage.isCode ? "" : place.passage.text
        font: place.passage.isNote ? Theme.caption : Theme.body
        color: place.passage.isNote ? Theme.textSecondary : Theme.text
        wrapMode: Text.Wrap
    }
    Repeater {
        model: place.passage.isCode ? 1 : 0

        HelpCode {
            width: place.width
            passage: place.passage
            viewModel: place.viewModel
        }
    }
}
