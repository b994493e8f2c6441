import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The settings, in three pages.
Item {
    id: settings

    required property SettingsViewModel viewModel

    objectName: "settings"

    ScreenHeader {
        id: header
        x: Theme.wide
        y: Theme.wide
        width: parent.width - 2 * Theme.wide
        title: qsTr("Settings")

        TabBar {
            id: tabs
            objectName: "settingsTabs"
            currentIndex: settings.viewModel.page
            onCurrentIndexChanged: settings.viewModel.page = currentIndex
            Accessible.name: qsTr("Settings pages")

            TabButton {
                objectName: "generalTab"
                text: qsTr("General")
                symbol: "gearshape"
            }
            TabButton {
                objectName: "privacyTab"
                text: qsTr("Privacy")
                symbol: "hand.raised"
            }
            TabButton {
                objectName: "connectionTab"
                text: qsTr("MCP Connection")
                symbol: "cable.connector"
            }
        }
    }
    StackLayout {
        anchors.fill: parent
        anchors.topMargin: header.y + header.height
        currentIndex: tabs.currentIndex

        GeneralSettingsView {
            viewModel: settings.viewModel.general
        }
        PrivacySettingsView {
            viewModel: settings.viewModel.privacy
        }
        MCPConnectionSettingsView {
            viewModel: settings.viewModel.connection
        }
    }
}
