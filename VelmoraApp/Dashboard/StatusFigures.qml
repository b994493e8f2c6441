import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// What changes of the status, each with what it means.
RowLayout {
    id: figures

    required property DashboardViewModel viewModel

    spacing: Theme.medium

    StatusFigure {
        objectName: "bridgeState"
        Layout.fillHeight: true
        symbol: "bolt.horizontal"
        label: qsTr("Bridge")
        value: figures.viewModel.bridgeState
        valueColor: Theme.colorOf(figures.viewModel.bridgeMeaning)
        caption: figures.viewModel.bridgeCaption
    }
    StatusFigure {
        objectName: "terminalState"
        Layout.fillHeight: true
        symbol: "terminal"
        label: qsTr("Status")
        value: figures.viewModel.terminalState
        valueColor: Theme.colorOf(figures.viewModel.terminalMeaning)
        caption: figures.viewModel.terminalCaption
    }
    StatusFigure {
        objectName: "sessionCount"
        Layout.fillHeight: true
        symbol: "rectangle.stack"
        label: qsTr("Sessions")
        value: figures.viewModel.sessionCount
        caption: figures.viewModel.sessionsCaption
    }
}
