import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// What an agent is doing at this moment, what one did last, and the button that stops them all.
Card {
    id: card

    required property DashboardViewModel viewModel
    readonly property NowViewModel now: viewModel.now

    objectName: "now"
    implicitHeight: row.implicitHeight + 2 * Theme.medium
    border.color: now.isActive ? Theme.accent : Theme.hairline

    RowLayout {
        id: row
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: Theme.large
        anchors.rightMargin: Theme.large
        spacing: Theme.medium

        Icon {
            symbol: card.viewModel.paused ? "pause.circle.fill" : "terminal"
            size: Theme.symbolMedium
            color: Theme.colorOf(card.now.meaning)
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: Theme.pickerWidth
            spacing: Theme.tight

            Label {
                objectName: "nowTitle"
                Layout.fillWidth: true
                text: card.now.title
                font: Theme.heading
                elide: Text.ElideRight
                maximumLineCount: 3
                wrapMode: Text.Wrap
                Accessible.name: qsTr("Now: %1").arg(text)
            }
            Label {
                objectName: "nowDetail"
                Layout.fillWidth: true
                visible: text.length > 0
                text: card.now.detail
                color: Theme.textSecondary
                elide: Text.ElideRight
            }
            Label {
                objectName: "lastDeed"
                Layout.fillWidth: true
                visible: card.now.last.length > 0
                text: qsTr("Last: %1").arg(card.now.last)
                color: Theme.textSecondary
                elide: Text.ElideRight
                maximumLineCount: 3
                wrapMode: Text.Wrap
            }
            Label {
                objectName: "lastCommand"
                Layout.fillWidth: true
                visible: text.length > 0
                text: card.now.lastCommand
                font: Theme.code
                elide: Text.ElideRight
                maximumLineCount: 1
            }
            Label {
                objectName: "lastProblem"
                Layout.fillWidth: true
                visible: text.length > 0
                text: card.now.lastProblem
                font: Theme.caption
                color: Theme.colorOf(card.now.lastMeaning)
                elide: Text.ElideRight
                maximumLineCount: 3
                wrapMode: Text.Wrap
            }
        }
        Button {
            objectName: "togglePause"
            text: card.viewModel.pauseButtonText
            symbol: card.viewModel.paused ? "play" : "pause"
            highlighted: card.viewModel.paused
            onClicked: card.viewModel.togglePause()
        }
    }
}
