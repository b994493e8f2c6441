pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The sections, and below them the actions for the whole application. Narrow, it shows the sections' symbols.
Rectangle {
    id: sidebar

    required property AppNavigation navigation
    property bool narrow: false

    signal aboutRequested
    signal quitRequested

    implicitWidth: narrow ? Theme.narrowSidebarWidth : Theme.sidebarWidth
    color: Theme.sidebar

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.small
        spacing: Theme.hair

        ListView {
            id: list
            objectName: "sidebar"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.topMargin: Theme.small
            spacing: Theme.hair
            interactive: false
            activeFocusOnTab: true
            keyNavigationEnabled: false
            model: sidebar.navigation.sections
            currentIndex: sidebar.navigation.selectedIndex
            Keys.onUpPressed: sidebar.navigation.selectedIndex -= 1
            Keys.onDownPressed: sidebar.navigation.selectedIndex += 1
            Accessible.role: Accessible.PageTabList
            Accessible.name: qsTr("Sections")

            delegate: SidebarItem {
                required property int index
                required property string section
                required property string title
                required symbol

                objectName: section + "Section"
                width: list.width
                text: title
                iconOnly: sidebar.narrow
                highlighted: ListView.isCurrentItem
                focusPolicy: Qt.NoFocus
                focusShown: ListView.isCurrentItem && list.activeFocus
                onClicked: sidebar.navigation.selectedIndex = index
            }
        }
        SidebarButton {
            objectName: "about"
            Layout.fillWidth: true
            text: qsTr("About Velmora")
            shortText: qsTr("About")
            narrow: sidebar.narrow
            onClicked: sidebar.aboutRequested()
        }
        SidebarButton {
            objectName: "quit"
            Layout.fillWidth: true
            text: qsTr("Quit Velmora")
            shortText: qsTr("Quit")
            narrow: sidebar.narrow
            onClicked: sidebar.quitRequested()
        }
    }

    Rectangle {
        anchors.right: parent.right
        width: Theme.hair
        height: parent.height
        color: Theme.hairline
    }
}
