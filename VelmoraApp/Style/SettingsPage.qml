import QtQuick

// One page of groups below each other.
ScrollPage {
    id: page

    required property string title

    Accessible.role: Accessible.Pane
    Accessible.name: title
}
