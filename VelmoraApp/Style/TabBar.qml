import QtQuick
import QtQuick.Templates as T

// Pages of one screen, side by side.
T.TabBar {
    id: control

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: Theme.tight / 2
    spacing: Theme.tight / 2

    contentItem: ListView {
        implicitWidth: contentWidth
        model: control.contentModel
        currentIndex: control.currentIndex
        spacing: control.spacing
        orientation: ListView.Horizontal
        boundsBehavior: Flickable.StopAtBounds
        flickableDirection: Flickable.AutoFlickIfNeeded
        highlightMoveDuration: 0
    }

    background: Rectangle {
        radius: Theme.controlRadius + Theme.tight / 2
        color: Theme.sidebar
        border.width: Theme.hair
        border.color: Theme.hairline
    }
}
