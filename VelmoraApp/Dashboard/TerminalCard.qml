import QtQuick
import Velmora
import Velmora.Style

// What hardly ever changes of the terminal, and the last request to it.
Card {
    id: card

    required property DashboardViewModel viewModel

    implicitHeight: rows.implicitHeight

    Column {
        id: rows
        width: parent.width

        StatusRow {
            objectName: "automation"
            width: parent.width
            symbol: "lock.shield"
            label: qsTr("Automation")
            value: card.viewModel.automation
            valueColor: Theme.colorOf(card.viewModel.automationMeaning)
            detail: card.viewModel.automationCaption
        }
        StatusRow {
            objectName: "windowCount"
            width: parent.width
            symbol: "macwindow"
            label: qsTr("Windows")
            value: card.viewModel.windowCount
        }
        StatusRow {
            objectName: "lastRequest"
            width: parent.width
            symbol: "clock"
            label: qsTr("Last request")
            value: card.viewModel.lastRequest || qsTr("None")
            valueColor: card.viewModel.lastRequest ? Theme.text : Theme.textSecondary
        }
        StatusRow {
            objectName: "recentError"
            width: parent.width
            symbol: "exclamationmark.triangle"
            label: qsTr("Recent error")
            value: card.viewModel.recentError || qsTr("None")
            valueColor: card.viewModel.recentError ? Theme.danger : Theme.textSecondary
            detail: card.viewModel.recentErrorSuggestion
            last: true
        }
    }
}
