pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The terminal's sessions, and what clients may do with each.
ScreenPage {
    id: sessions

    required property SessionsViewModel viewModel

    objectName: "sessions"

    ScreenHeader {
        Layout.fillWidth: true
        title: qsTr("Sessions")

        CheckBox {
            objectName: "includeBusy"
            text: qsTr("Show busy")
            checked: sessions.viewModel.includeBusy
            onToggled: sessions.viewModel.includeBusy = checked
        }
        CheckBox {
            objectName: "includeReadOnly"
            Layout.leftMargin: Theme.small
            Layout.rightMargin: Theme.small
            text: qsTr("Show read-only")
            checked: sessions.viewModel.includeReadOnly
            onToggled: sessions.viewModel.includeReadOnly = checked
        }
        Button {
            objectName: "refreshSessions"
            text: qsTr("Refresh")
            symbol: "arrow.clockwise"
            enabled: !sessions.viewModel.isLoading
            onClicked: sessions.viewModel.refresh()
        }
    }
    Banner {
        objectName: "sessionsProblem"
        Layout.fillWidth: true
        visible: text.length > 0
        symbol: "exclamationmark.triangle"
        text: sessions.viewModel.problem
        dismissible: true
        onDismissed: sessions.viewModel.dismissProblem()
    }
    SettingsCaption {
        objectName: "whatPermissionsDo"
        text: sessions.viewModel.permissionsText
    }
    ListCard {
        Layout.fillWidth: true
        Layout.fillHeight: true
        list: list
        listTop: columns.height

        SessionColumns {
            id: columns
            width: parent.width
            visible: list.visible
        }
        ListView {
            id: list
            objectName: "sessionList"
            anchors.fill: parent
            anchors.topMargin: columns.height
            anchors.bottomMargin: Theme.hair
            visible: count > 0
            clip: true
            model: sessions.viewModel.sessions
            currentIndex: -1
            highlightMoveDuration: 0
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {
            }
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Sessions")

            delegate: SessionRow {
                required property int index

                width: list.width
                permissions: sessions.viewModel.permissions
                permissionCaptions: sessions.viewModel.permissionCaptions
                onPermissionPicked: row => sessions.viewModel.setPermission(sessionId, row)
                onShowRequested: sessions.viewModel.focus(sessionId)
                // Not as the current item, which Qt gives the focus anew: the ring would go.
                onEntered: list.positionViewAtIndex(index, ListView.Contain)
            }
        }
        EmptyState {
            objectName: "noSessions"
            anchors.centerIn: parent
            visible: sessions.viewModel.count === 0
            symbol: "terminal"
            title: sessions.viewModel.emptyTitle
            text: sessions.viewModel.emptyText
        }
    }
}
