pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// What agents do now and did last with the switch that stops them, who they are, and the state of the bridge and of the
// terminal.
ScrollPage {
    id: dashboard

    required property DashboardViewModel viewModel
    required property RecentRequestsViewModel recentRequests

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
        NowCard {
            Layout.fillWidth: true
            viewModel: dashboard.viewModel
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
        clients: dashboard.viewModel.clients
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
}
