import QtQuick

// A card as high as its list but no higher than its own space, in which the list scrolls. With an empty list the card
// fills the space, for an EmptyState.
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
