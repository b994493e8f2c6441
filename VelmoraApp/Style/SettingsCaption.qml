import QtQuick
import QtQuick.Layouts

// Explains what stands above or below it.
Label {
    Layout.fillWidth: true
    font: Theme.caption
    color: Theme.textSecondary
    wrapMode: Text.Wrap
}
