import QtQuick
import Velmora.Style

// A word for a state. Only one that something went wrong with is filled, so that it is seen among the others; the tool
// tip says what the word means.
Rectangle {
    id: badge

    property alias text: label.text
    property int meaning: Meaning.Quiet
    property string help
    readonly property bool filled: meaning === Meaning.Caution || meaning === Meaning.Danger
    readonly property color ink: Theme.colorOf(meaning)

    implicitWidth: label.implicitWidth + 2 * Theme.small
    implicitHeight: label.implicitHeight + Theme.tight
    radius: height / 2
    color: filled ? Theme.tint(ink) : "transparent"
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text
    Accessible.description: help

    HoverTip {
        text: badge.help
    }
    Label {
        id: label
        anchors.centerIn: parent
        font: Theme.caption
        color: badge.ink
        Accessible.ignored: true
    }
}
