import QtQuick
import QtQuick.Templates as T

// Says more about its parent, which is no control, when the mouse rests on it.
Item {
    id: tip

    required property string text

    anchors.fill: parent
    T.ToolTip.visible: text.length > 0 && pointer.hovered
    T.ToolTip.text: text
    T.ToolTip.delay: Theme.patience

    HoverHandler {
        id: pointer
    }
}
