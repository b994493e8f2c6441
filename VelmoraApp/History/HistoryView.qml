import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// All recorded requests, filtered by text, tool and status.
ScreenPage {
    id: history

    required property HistoryViewModel viewModel

    objectName: "history"

    ScreenHeader {
        Layout.fillWidth: true
        title: qsTr("Request History")

        Button {
            objectName: "clearHistory"
            text: qsTr("Clear")
            symbol: "trash"
            onClicked: history.viewModel.clearing.request()
        }
    }
    Banner {
        objectName: "historyProblem"
        Layout.fillWidth: true
        visible: text.length > 0
        symbol: "exclamationmark.triangle"
        text: history.viewModel.clearing.problem
        dismissible: true
        onDismissed: history.viewModel.clearing.dismissProblem()
    }
    RowLayout {
        spacing: Theme.small

        SearchField {
            objectName: "searchHistory"
            Layout.fillWidth: true
            placeholderText: qsTr("Search history")
            text: history.viewModel.query
            onTextChanged: history.viewModel.query = text
        }
        ComboBox {
            objectName: "toolPicker"
            Layout.preferredWidth: Theme.widePickerWidth
            listWidth: Theme.pickerListWidth
            Accessible.name: qsTr("Tool")
            model: history.viewModel.toolLabels
            currentIndex: history.viewModel.toolIndex
            onActivated: index => history.viewModel.toolIndex = index
        }
        ComboBox {
            objectName: "statusPicker"
            Accessible.name: qsTr("Status")
            model: history.viewModel.statusLabels
            currentIndex: history.viewModel.statusIndex
            onActivated: index => history.viewModel.statusIndex = index
        }
    }
    ListCard {
        Layout.fillWidth: true
        Layout.fillHeight: true
        list: list

        RecentRequestsView {
            id: list
            anchors.fill: parent
            anchors.margins: Theme.hair
            visible: count > 0
            records: history.viewModel.records
        }
        EmptyState {
            objectName: "emptyHistory"
            anchors.centerIn: parent
            visible: history.viewModel.count === 0
            symbol: history.viewModel.totalCount > 0 ? "magnifyingglass" : "clock.arrow.circlepath"
            title: history.viewModel.totalCount > 0 ? qsTr("No matching requests") : qsTr("No requests yet")
            text: history.viewModel.totalCount > 0 ? qsTr("Change the search, the tool or the status.") : qsTr("What MCP clients ask of your terminal appears here.")
        }
    }

    ClearHistoryDialog {
        clearing: history.viewModel.clearing
    }
}
