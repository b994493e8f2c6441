import QtQuick
import QtQuick.Layouts

// The title of a screen, with its actions at the far end.
RowLayout {
    property alias title: titleLabel.text

    spacing: Theme.small

    Label {
        id: titleLabel
        objectName: "screenTitle"
        Layout.fillWidth: true
        font: Theme.title
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
