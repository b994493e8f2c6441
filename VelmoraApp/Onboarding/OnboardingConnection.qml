import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// What goes into the configuration of the user's MCP client, and whether it will work.
ColumnLayout {
    id: connection

    required property MCPConnectionViewModel viewModel
    readonly property string clientName: viewModel.clientNames[viewModel.clientIndex]

    spacing: Theme.small

    RowLayout {
        spacing: Theme.small

        ComboBox {
            objectName: "clientPicker"
            Layout.preferredWidth: Theme.widePickerWidth
            Accessible.name: qsTr("Client")
            model: connection.viewModel.clientNames
            currentIndex: connection.viewModel.clientIndex
            onActivated: index => connection.viewModel.clientIndex = index
        }
        SettingsCopyButton {
            objectName: "copyClientSnippet"
            title: qsTr("Copy")
            help: qsTr("Copy configuration for %1").arg(connection.clientName)
            value: connection.viewModel.clientSnippet
        }
    }
    SettingsCaption {
        objectName: "clientPlace"
        text: connection.viewModel.clientPlace
    }
    SettingsCodeBlock {
        objectName: "clientSnippet"
        name: qsTr("Configuration for %1").arg(connection.clientName)
        text: connection.viewModel.clientSnippet
    }
    ConnectionTestView {
        Layout.fillWidth: true
        test: connection.viewModel.test
    }
}
