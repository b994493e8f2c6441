import QtQuick

// A line between two rows of a card.
Rectangle {
    implicitHeight: Theme.hair
    color: Theme.hairline
}
