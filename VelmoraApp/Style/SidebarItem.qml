import QtQuick

// One entry of the sidebar.
ItemDelegate {
    horizontalPadding: iconOnly ? (Theme.narrowSidebarWidth - Theme.symbol) / 2 - Theme.small : Theme.medium
    verticalPadding: Theme.small
    spacing: Theme.medium
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.PageTab
    Accessible.selectable: true
    Accessible.selected: highlighted
}
