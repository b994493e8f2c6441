import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// What is stored about requests, and what clients may do. Every change is saved at once.
SettingsPage {
    id: page

    required property PrivacySettingsViewModel viewModel

    objectName: "privacySettings"
    title: qsTr("Privacy")

    pinned: Banner {
        objectName: "settingsProblem"
        Layout.fillWidth: true
        visible: text.length > 0
        symbol: "exclamationmark.triangle"
        text: page.viewModel.problem
        dismissible: true
        onDismissed: page.viewModel.dismissProblem()
    }

    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Local history")

        Switch {
            objectName: "persistentHistoryEnabled"
            Layout.fillWidth: true
            text: qsTr("Persist request metadata")
            checked: page.viewModel.persistentHistoryEnabled
            onToggled: page.viewModel.persistentHistoryEnabled = checked
        }
        Separator {
            Layout.fillWidth: true
        }
        Switch {
            objectName: "deleteOnAppExit"
            Layout.fillWidth: true
            text: qsTr("Delete history when app exits")
            checked: page.viewModel.deleteOnAppExit
            onToggled: page.viewModel.deleteOnAppExit = checked
        }
        SettingsCaption {
            objectName: "historyCaption"
            text: page.viewModel.historyCaption
        }
        Separator {
            Layout.fillWidth: true
        }
        SettingsNumberStepper {
            objectName: "retentionDays"
            Layout.fillWidth: true
            title: qsTr("Retention")
            valueText: value => qsTr("%1 days").arg(Number(value).toLocaleString(Qt.locale(), "f", 0))
            value: page.viewModel.retentionDays
            range: page.viewModel.retentionDaysRange
            onPicked: value => page.viewModel.retentionDays = value
        }
        Separator {
            Layout.fillWidth: true
        }
        SettingsNumberStepper {
            objectName: "maximumRecordCount"
            Layout.fillWidth: true
            title: qsTr("Maximum records")
            valueText: value => qsTr("%1 records").arg(Number(value).toLocaleString(Qt.locale(), "f", 0))
            value: page.viewModel.maximumRecordCount
            range: page.viewModel.maximumRecordCountRange
            step: 100
            onPicked: value => page.viewModel.maximumRecordCount = value
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Sensitive content")

        SettingsCaption {
            text: qsTr("Commands and output may contain passwords, API keys, tokens, and private file contents. Automatic masking is not complete.")
        }
        Switch {
            objectName: "storeCommandBody"
            Layout.fillWidth: true
            text: qsTr("Store command bodies")
            enabled: page.viewModel.persistentHistoryEnabled
            checked: page.viewModel.storeCommandBody
            onToggled: page.viewModel.storeCommandBody = checked
        }
        Separator {
            Layout.fillWidth: true
        }
        Switch {
            objectName: "storeOutputPreview"
            Layout.fillWidth: true
            text: qsTr("Store output previews")
            enabled: page.viewModel.persistentHistoryEnabled
            checked: page.viewModel.storeOutputPreview
            onToggled: page.viewModel.storeOutputPreview = checked
        }
        Separator {
            Layout.fillWidth: true
        }
        SettingsNumberStepper {
            objectName: "outputPreviewMaxCharacters"
            Layout.fillWidth: true
            title: qsTr("Preview limit")
            valueText: value => qsTr("%1 characters").arg(Number(value).toLocaleString(Qt.locale(), "f", 0))
            value: page.viewModel.outputPreviewMaxCharacters
            range: page.viewModel.outputPreviewMaxCharactersRange
            step: 100
            onPicked: value => page.viewModel.outputPreviewMaxCharacters = value
        }
        SettingsCaption {
            text: qsTr("Output previews are captured only for terminal_read_output requests; terminal_send_command records delivery, not results. Enabling applies to new requests only, while disabling removes previews already stored.")
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Command delivery")

        Switch {
            objectName: "allowBusySessionInput"
            Layout.fillWidth: true
            text: qsTr("Send to busy sessions")
            checked: page.viewModel.allowBusySessionInput
            onToggled: page.viewModel.allowBusySessionInput = checked
        }
        SettingsCaption {
            text: qsTr("Input may be delivered to foreground programs such as Claude Code instead of a shell prompt.")
        }
        Separator {
            Layout.fillWidth: true
        }
        Label {
            text: qsTr("Session policy")
            Accessible.ignored: true
        }
        SessionPolicyChoices {
            objectName: "sessionPolicy"
            lineWidth: Math.max(Theme.measure / 2, page.width - 2 * Theme.wide - 2 * Theme.large)
            labels: page.viewModel.sessionPolicyLabels
            captions: page.viewModel.sessionPolicyCaptions
            currentIndex: page.viewModel.sessionPolicyIndex
            onPicked: index => page.viewModel.sessionPolicyIndex = index
        }
        SettingsCaption {
            objectName: "sessionPolicyScope"
            text: qsTr("For sessions found from now on")
        }
        Button {
            objectName: "restrictKnownSessions"
            visible: page.viewModel.restrictsKnownSessions
            text: page.viewModel.restrictText
            symbol: "lock.shield"
            onClicked: page.viewModel.restrictKnownSessions()
        }
    }
    SettingsSectionBlock {
        Layout.fillWidth: true
        title: qsTr("Maintenance")

        Banner {
            objectName: "clearProblem"
            Layout.fillWidth: true
            visible: text.length > 0
            symbol: "exclamationmark.triangle"
            text: page.viewModel.clearing.problem
            dismissible: true
            onDismissed: page.viewModel.clearing.dismissProblem()
        }
        Button {
            objectName: "clearRequestHistory"
            text: qsTr("Clear request history")
            symbol: "trash"
            onClicked: page.viewModel.clearing.request()
        }
        SettingsCaption {
            text: qsTr("Terminal scrollback and shell history are not changed.")
        }
    }

    ClearHistoryDialog {
        clearing: page.viewModel.clearing
    }
    Dialog {
        objectName: "warningDialog"
        visible: page.viewModel.warns
        title: qsTr("Sensitive data warning")
        text: qsTr("This content stays local but may contain secrets. Continue?")
        confirmText: qsTr("Enable")
        onAccepted: page.viewModel.enableAfterWarning()
        onRejected: page.viewModel.cancelWarning()
    }
}
