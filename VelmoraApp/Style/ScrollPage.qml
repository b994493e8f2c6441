import QtQuick
import QtQuick.Layouts

// A screen that is a column and scrolls when the window is too low for it; what is pinned stays above. What takes the
// keyboard is scrolled into sight.
Item {
    id: page

    default property alias contents: column.data
    property alias pinned: head.data
    property alias contentY: flickable.contentY
    property alias contentHeight: flickable.contentHeight
    readonly property Item focusItem: Window.activeFocusItem

    onFocusItemChanged: reveal()

    function reveal() {
        let item = focusItem;
        while (item && item !== column)
            item = item.parent;
        if (!item)
            return;
        const top = focusItem.mapToItem(column, 0, 0).y;
        const bottom = top + focusItem.height + 2 * Theme.wide;
        flickable.contentY = Math.max(0, Math.min(contentY, top), Math.min(bottom - flickable.height, contentHeight - flickable.height));
    }

    ColumnLayout {
        id: head
        x: Theme.wide
        y: Theme.wide
        width: page.width - 2 * Theme.wide
        spacing: Theme.medium
    }
    Flickable {
        id: flickable
        anchors.fill: parent
        anchors.topMargin: head.implicitHeight > 0 ? head.y + head.height - Theme.medium : 0
        contentHeight: column.implicitHeight + 2 * Theme.wide
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {
        }

        ColumnLayout {
            id: column
            x: Theme.wide
            y: Theme.wide
            width: page.width - 2 * Theme.wide
            spacing: Theme.medium
        }
    }
}
