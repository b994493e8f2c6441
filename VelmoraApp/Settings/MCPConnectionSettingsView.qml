import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// What an MCP client needs to reach this application.
SettingsPage {
    id: page

    required property MCPConnectionViewModel viewModel

    objectName: "connectionSettings"
    title: qsTr("MCP Connection")

    Banner {
        objectName: "helperMissing"
        Layout.fillWidth: true
        visible: page.viewModel.helperMissing
        symbol: "exclamationmark.triangle"
        text: qsTr("There is no helper at %1. Install Velmora again.").arg(page.viewModel.helperPath)
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Local stdio server")

        SettingsCaption {
            text: page.viewModel.caption
        }
        Switch {
            objectName: "extendedForm"
            Layout.fillWidth: true
            text: qsTr("Extended form of the tools")
            checked: page.viewModel.extended
            onToggled: page.viewModel.extended = checked
        }
        SettingsCaption {
            text: qsTr("The same nine tools with further optional arguments: waiting for a command's end and its exit code, single keys, new lines only. The texts on this page ask for it when it is on; a client that is connected already keeps the form that it has.")
        }
        SettingsCodeBlock {
            objectName: "configuration"
            name: qsTr("Configuration")
            text: page.viewModel.configuration
        }
        SettingsCopyButton {
            objectName: "copyConfiguration"
            title: qsTr("Copy configuration")
            value: page.viewModel.configuration
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("OpenClaw")

        SettingsCodeBlock {
            objectName: "openClawConfiguration"
            name: qsTr("OpenClaw JSON")
            text: page.viewModel.openClawConfiguration
        }
        SettingsCopyButton {
            objectName: "copyOpenClawConfiguration"
            title: qsTr("Copy OpenClaw JSON")
            value: page.viewModel.openClawConfiguration
        }
        Separator {
            Layout.fillWidth: true
            visible: page.viewModel.openClawCommands.length > 0
        }
        SettingsCaption {
            visible: page.viewModel.openClawCommands.length > 0
            text: qsTr("OpenClaw CLI can save the same MCP server definition and probe it without editing JSON by hand.")
        }
        SettingsCodeBlock {
            objectName: "openClawCommands"
            visible: page.viewModel.openClawCommands.length > 0
            name: qsTr("OpenClaw CLI")
            text: page.viewModel.openClawCommands
        }
        SettingsCopyButton {
            objectName: "copyOpenClawCommands"
            visible: page.viewModel.openClawCommands.length > 0
            title: qsTr("Copy OpenClaw CLI")
            value: page.viewModel.openClawCommands
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Each client")

        ComboBox {
            objectName: "clientPicker"
            Layout.preferredWidth: Theme.widePickerWidth
            Accessible.name: qsTr("Client")
            model: page.viewModel.clientNames
            currentIndex: page.viewModel.clientIndex
            onActivated: index => page.viewModel.clientIndex = index
        }
        SettingsCaption {
            objectName: "clientPlace"
            text: page.viewModel.clientPlace
        }
        SettingsCodeBlock {
            objectName: "clientSnippet"
            name: qsTr("Configuration for %1").arg(page.viewModel.clientNames[page.viewModel.clientIndex])
            text: page.viewModel.clientSnippet
        }
        SettingsCopyButton {
            objectName: "copyClientSnippet"
            title: qsTr("Copy")
            help: qsTr("Copy configuration for %1").arg(page.viewModel.clientNames[page.viewModel.clientIndex])
            value: page.viewModel.clientSnippet
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Helper")

        ConnectionTestView {
            Layout.fillWidth: true
            test: page.viewModel.test
        }
        Separator {
            Layout.fillWidth: true
        }

        SettingsCodeBlock {
            objectName: "helperPath"
            name: qsTr("Helper path")
            text: page.viewModel.helperPath
        }
        SettingsCopyButton {
            objectName: "copyHelperPath"
            title: qsTr("Copy helper path")
            value: page.viewModel.helperPath
        }
    }
}
