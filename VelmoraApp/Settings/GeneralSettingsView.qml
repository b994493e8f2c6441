pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// Start-up, updates and what the system has to allow.
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
}
