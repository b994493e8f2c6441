pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// Start-up, updates, what the system has to allow, agents' windows, the tmux server and the language.
SettingsPage {
    id: page

    required property GeneralSettingsViewModel viewModel

    objectName: "generalSettings"
    title: qsTr("General")

    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Startup")

        Switch {
            objectName: "launchAtLogin"
            Layout.fillWidth: true
            text: qsTr("Launch at login")
            checked: page.viewModel.launchAtLogin.enabled
            onToggled: page.viewModel.launchAtLogin.setEnabled(checked)
        }
        SettingsCaption {
            objectName: "launchAtLoginProblem"
            visible: text.length > 0
            text: page.viewModel.launchAtLogin.errorMessage
            color: Theme.danger
            Accessible.role: Accessible.AlertMessage
        }
        Separator {
            Layout.fillWidth: true
        }
        Switch {
            objectName: "menuBarEnabled"
            Layout.fillWidth: true
            text: page.viewModel.menuBarText
            checked: page.viewModel.menuBarEnabled
            onToggled: page.viewModel.menuBarEnabled = checked
        }
        SettingsCaption {
            objectName: "noTray"
            visible: !page.viewModel.menuBarHasPlace
            text: qsTr("This desktop has no place for it at the moment.")
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Updates")

        Switch {
            objectName: "automaticUpdates"
            Layout.fillWidth: true
            text: qsTr("Check for updates automatically")
            enabled: page.viewModel.updater.isAvailable
            checked: page.viewModel.updater.automaticallyChecksForUpdates
            onToggled: page.viewModel.updater.setAutomaticallyChecksForUpdates(checked)
        }
        SettingsCaption {
            objectName: "updatesCaption"
            text: page.viewModel.updater.caption
        }
        Separator {
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.medium

            Button {
                objectName: "checkForUpdates"
                text: qsTr("Check for Updates…")
                enabled: page.viewModel.updater.isAvailable && !page.viewModel.updater.isChecking
                onClicked: page.viewModel.updater.checkForUpdates()
            }
            SettingsCaption {
                objectName: "lastChecked"
                text: page.viewModel.updater.lastCheckedText
            }
        }
        SettingsCaption {
            objectName: "checkResult"
            visible: text.length > 0
            text: page.viewModel.updater.checkResult
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Permissions")

        SettingsCaption {
            objectName: "permissionsCaption"
            text: page.viewModel.permissionsCaption
        }
        // No layout: Qt 6.4 lays out rows that a changed model has just destroyed.
        Column {
            id: permissions
            Layout.fillWidth: true
            spacing: Theme.medium

            Repeater {
                model: page.viewModel.permissions

                PermissionSettingsRowView {
                    required property int index

                    objectName: "permission" + index
                    width: permissions.width
                    onOpenRequested: page.viewModel.openPermission(index)
                }
            }
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Windows that agents open")

        Switch {
            objectName: "ownBusyInput"
            Layout.fillWidth: true
            text: qsTr("Busy windows that an agent opened accept input")
            checked: page.viewModel.ownBusyInput
            onToggled: page.viewModel.ownBusyInput = checked
        }
        SettingsCaption {
            text: page.viewModel.usesTmux ? qsTr("Agents can answer and interrupt what they started. A window that you have looked at counts as yours.") : qsTr("Has no effect with Terminal.app, which does not tell whether you have typed in a window.")
        }
        Separator {
            Layout.fillWidth: true
            visible: page.viewModel.usesTmux
        }
        Switch {
            objectName: "shellIntegration"
            Layout.fillWidth: true
            visible: page.viewModel.usesTmux
            text: qsTr("Shell integration")
            checked: page.viewModel.shellIntegration
            onToggled: page.viewModel.shellIntegration = checked
        }
        SettingsCaption {
            visible: page.viewModel.usesTmux
            text: qsTr("bash, zsh and fish in new windows of agents tell how each command ended. None of your files is changed.")
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        visible: page.viewModel.usesTmux
        title: qsTr("tmux server")

        TextField {
            objectName: "tmuxSocket"
            Layout.fillWidth: true
            placeholderText: qsTr("The usual server")
            inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
            text: page.viewModel.tmuxSocket
            Accessible.name: qsTr("Path of the tmux server's socket")
            onEditingFinished: page.viewModel.tmuxSocket = text
        }
        SettingsCaption {
            text: qsTr("The path of its socket, for a server that you start with tmux -L or -S: /tmp/tmux-1000/work, for example. Takes effect when Velmora starts next.")
        }
    }
    // Of this and the group above.
    SettingsCaption {
        objectName: "settingsProblem"
        visible: text.length > 0
        text: page.viewModel.settingsProblem
        color: Theme.danger
        Accessible.role: Accessible.AlertMessage
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Language")

        ComboBox {
            objectName: "languagePicker"
            Layout.preferredWidth: Theme.widePickerWidth
            Accessible.name: qsTr("Language")
            model: page.viewModel.languageLabels
            currentIndex: page.viewModel.languageIndex
            onActivated: index => page.viewModel.languageIndex = index
        }
    }
}
