import QtQuick
import QtQuick.Templates as T

T.Label {
    color: Theme.text
    linkColor: Theme.accent
    font: Theme.body
    textFormat: Text.PlainText
}
