import QtQuick

// A surface that holds what belongs together.
Rectangle {
    radius: Theme.cardRadius
    color: Theme.card
    border.width: Theme.hair
    border.color: Theme.hairline
}
