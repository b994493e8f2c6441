pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The state of the bridge and of the terminal at a glance, and the switch that stops every change.
ScrollPage {
    id: dashboard

    required property DashboardViewModel viewModel
    required property RecentRequestsViewModel recentRequests
    readonly property bool wide: width >= Theme.wideScreen

    objectName: "dashboard"

    pinned: [
        ScreenHeader {
            Layout.fillWidth: true
            title: qsTr("Dashboard")

            Button {
                objectName: "refreshStatus"
                text: qsTr("Refresh")
                symbol: "arrow.clockwise"
                enabled: !dashboard.viewModel.isLoading
                onClicked: dashboard.viewModel.refresh()
            }
            Button {
                objectName: "togglePause"
                text: dashboard.viewModel.pauseButtonText
                symbol: dashboard.viewModel.paused ? "play" : "pause"
                highlighted: dashboard.viewModel.paused
                onClicked: dashboard.viewModel.togglePause()
            }
        },
        Banner {
            objectName: "servingProblem"
            Layout.fillWidth: true
            visible: text.length > 0
            symbol: "exclamationmark.triangle"
            meaning: Theme.danger
            text: dashboard.viewModel.servingProblem
            actionText: qsTr("Restart the bridge")
            actionEnabled: !dashboard.viewModel.isRestarting
            onActionRequested: dashboard.viewModel.restartBridge()
        },
        // No layout: Qt 6.4 lays out rows that a changed model has just destroyed.
        Column {
            id: warnings
            Layout.fillWidth: true
            visible: dashboard.viewModel.warnings.length > 0
            spacing: Theme.small

            Repeater {
                model: dashboard.viewModel.warnings

                Banner {
                    required property string modelData

                    width: warnings.width
                    symbol: "exclamationmark.triangle"
                    text: modelData
                }
            }
        }
    ]

    StatusFigures {
        Layout.fillWidth: true
        columns: dashboard.wide ? 4 : 2
        viewModel: dashboard.viewModel
    }
    Label {
        Layout.topMargin: Theme.medium
        text: dashboard.viewModel.terminalName
        font: Theme.heading
        color: Theme.textSecondary
    }
    TerminalCard {
        Layout.fillWidth: true
        viewModel: dashboard.viewModel
    }
    Label {
        Layout.topMargin: Theme.medium
        text: qsTr("Connected clients")
        font: Theme.heading
        color: Theme.textSecondary
    }
    ClientsCard {
        Layout.fillWidth: true
        clients: dashboard.viewModel.connectedClients
    }
    Label {
        Layout.topMargin: Theme.medium
        text: qsTr("Recent requests")
        font: Theme.heading
        color: Theme.textSecondary
    }
    Card {
        Layout.fillWidth: true
        Layout.preferredHeight: recent.visible ? recent.contentHeight : Theme.rowHeight

        Label {
            anchors.verticalCenter: parent.verticalCenter
            x: Theme.large
            visible: !recent.visible
            text: qsTr("No requests yet")
            color: Theme.textSecondary
        }
        RecentRequestsView {
            id: recent
            anchors.fill: parent
            visible: count > 0
            interactive: false
            records: dashboard.recentRequests.records
        }
    }
}
