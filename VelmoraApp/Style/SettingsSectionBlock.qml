import QtQuick
import QtQuick.Layouts

// A titled group. What stands in it is laid out as a column on one surface.
ColumnLayout {
    id: block

    default property alias contents: column.data
    property alias title: titleLabel.text

    spacing: Theme.small

    Label {
        id: titleLabel
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        visible: text.length > 0
        font: Theme.heading
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Card {
        Layout.fillWidth: true
        implicitHeight: column.implicitHeight + 2 * Theme.large

        ColumnLayout {
            id: column
            x: Theme.large
            y: Theme.large
            width: parent.width - 2 * x
            spacing: Theme.medium
        }
    }
}
