import QtQuick
import QtQuick.Templates as T

T.ScrollBar {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: Theme.focusWidth
    minimumSize: Theme.leastScrollHandle
    visible: policy === T.ScrollBar.AlwaysOn || (policy === T.ScrollBar.AsNeeded && size < 1)
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: Theme.scrollBarWidth
        implicitHeight: Theme.scrollBarWidth
        radius: width / 2
        color: control.pressed || control.hovered ? Theme.textSecondary : Theme.frame
    }
}
