import QtQuick
import QtQuick.Templates as T

T.ToolTip {
    id: control

    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: parent ? parent.height + Theme.tight : 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: Theme.tight
    horizontalPadding: Theme.small
    verticalPadding: Theme.tight
    font: Theme.caption
    delay: Theme.patience
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Label {
        text: control.text
        font: control.font
        wrapMode: Text.Wrap
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.control
        border.width: Theme.hair
        border.color: Theme.frame
    }
}
