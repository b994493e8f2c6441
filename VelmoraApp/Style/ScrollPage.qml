import QtQuick
import QtQuick.Layouts

// A screen that is a column and scrolls when the window is too low for it. What takes the keyboard is scrolled into sight.
Flickable {
    id: page

    default property alias contents: column.data
    readonly property Item focusItem: Window.activeFocusItem

    contentHeight: column.implicitHeight + 2 * Theme.wide
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    ScrollBar.vertical: ScrollBar {
    }
    onFocusItemChanged: reveal()

    function reveal() {
        let item = focusItem;
        while (item && item !== column)
            item = item.parent;
        if (!item)
            return;
        const top = focusItem.mapToItem(column, 0, 0).y;
        const bottom = top + focusItem.height + 2 * Theme.wide;
        contentY = Math.max(0, Math.min(contentY, top), Math.min(bottom - height, contentHeight - height));
    }

    ColumnLayout {
        id: column
        x: Theme.wide
        y: Theme.wide
        width: page.width - 2 * Theme.wide
        spacing: Theme.medium
    }
}
