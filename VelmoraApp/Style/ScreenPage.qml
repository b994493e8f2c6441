import QtQuick
import QtQuick.Layouts

// A screen that is a column as high as the window, with one part that scrolls by itself.
Item {
    default property alias contents: column.data

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Theme.wide
        spacing: Theme.medium
    }
}
