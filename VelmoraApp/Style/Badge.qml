import QtQuick

// A word for a state, in the colour of its meaning.
Rectangle {
    id: badge

    property alias text: label.text
    property color meaning: Theme.textSecondary

    implicitWidth: label.implicitWidth + 2 * Theme.small
    implicitHeight: label.implicitHeight + Theme.tight
    radius: height / 2
    color: Theme.tint(meaning)
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text

    Label {
        id: label
        anchors.centerIn: parent
        font: Theme.caption
        color: badge.meaning
        Accessible.ignored: true
    }
}
