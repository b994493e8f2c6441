import QtQuick

// One entry of the sidebar.
ItemDelegate {
    horizontalPadding: Theme.medium
    verticalPadding: Theme.small
    spacing: Theme.medium
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.PageTab
    Accessible.selectable: true
    Accessible.selected: highlighted
}
