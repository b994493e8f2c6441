import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// All recorded requests, filtered by text, tool and status.
ScreenPage {
    id: history

    required property HistoryViewModel viewModel

    signal privacySettingsRequested

    objectName: "history"

    Binding {
        target: history.viewModel
        property: "shown"
        value: history.visible && history.Window.visibility !== Window.Hidden
    }

    function takeSearch() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    ScreenHeader {
        Layout.fillWidth: true
        title: qsTr("Request History")

        CheckBox {
            objectName: "includeOwn"
            Layout.rightMargin: Theme.small
            text: qsTr("Show Velmora's own")
            checked: history.viewModel.includeOwn
            onToggled: history.viewModel.includeOwn = checked
        }
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
            id: search
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
    RowLayout {
        visible: history.viewModel.notKept.length > 0
        spacing: Theme.small

        Label {
            objectName: "notKept"
            text: history.viewModel.notKept
            font: Theme.caption
            color: Theme.textSecondary
        }
        Button {
            objectName: "openPrivacySettings"
            flat: true
            font: Theme.caption
            text: qsTr("Privacy settings")
            onClicked: history.privacySettingsRequested()
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
