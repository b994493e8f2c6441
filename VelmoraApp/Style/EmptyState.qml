import QtQuick

// What a screen shows when it is empty: a symbol, what is missing, and what to do about it.
Column {
    id: empty

    property alias symbol: icon.symbol
    property alias title: titleLabel.text
    property alias text: textLabel.text

    spacing: Theme.small
    width: Math.min(Theme.measure, parent.width - 2 * Theme.wide)

    Icon {
        id: icon
        anchors.horizontalCenter: parent.horizontalCenter
        size: Theme.symbolLarge
    }
    Label {
        id: titleLabel
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        font: Theme.heading
    }
    Label {
        id: textLabel
        width: parent.width
        visible: text.length > 0
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: Theme.textSecondary
    }
}
