import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The four figures at the head of the dashboard.
GridLayout {
    id: figures

    required property DashboardViewModel viewModel

    columnSpacing: Theme.medium
    rowSpacing: Theme.medium

    StatusFigure {
        objectName: "bridgeState"
        symbol: "bolt.horizontal"
        label: qsTr("Bridge")
        value: figures.viewModel.bridgeState
        valueColor: Theme.colorOf(figures.viewModel.bridgeMeaning)
    }
    StatusFigure {
        objectName: "automation"
        symbol: "lock.shield"
        label: qsTr("Automation")
        value: figures.viewModel.automation
        valueColor: Theme.colorOf(figures.viewModel.automationMeaning)
    }
    StatusFigure {
        objectName: "windowCount"
        symbol: "macwindow"
        label: qsTr("Windows")
        value: figures.viewModel.windowCount
    }
    StatusFigure {
        objectName: "sessionCount"
        symbol: "rectangle.stack"
        label: qsTr("Sessions")
        value: figures.viewModel.sessionCount
    }
}
