import QtQuick

// A card as high as its list, and no higher than its place; the list scrolls within it. A list without rows leaves the
// whole place to the EmptyState beside it.
Item {
    id: place

    required property ListView list
    // What stands above the list within the card.
    property real listTop: Theme.hair
    default property alias contents: card.data

    Card {
        id: card
        width: place.width
        height: place.list.count > 0 ? Math.min(place.height, place.listTop + place.list.contentHeight + Theme.hair) : place.height
    }
}
