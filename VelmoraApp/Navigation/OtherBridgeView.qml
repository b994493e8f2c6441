import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// In place of the window's content while another bridge serves: nothing here could act on that one.
FocusScope {
    id: other

    required property OtherBridgeViewModel viewModel

    signal quitRequested

    objectName: "otherBridge"
    Accessible.role: Accessible.Pane
    Accessible.name: viewModel.title
    Accessible.description: viewModel.text

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(Theme.measure, parent.width - 2 * Theme.wide)
        spacing: Theme.large

        Icon {
            Layout.alignment: Qt.AlignHCenter
            symbol: "bolt.horizontal"
            size: Theme.symbolLarge
            color: Theme.caution
        }
        Label {
            objectName: "otherBridgeTitle"
            Layout.fillWidth: true
            text: other.viewModel.title
            font: Theme.title
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Label {
            Layout.fillWidth: true
            text: other.viewModel.text
            color: Theme.textSecondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Banner {
            objectName: "otherBridgeProblem"
            Layout.fillWidth: true
            visible: text.length > 0
            symbol: "exclamationmark.triangle"
            text: other.viewModel.problem
        }
        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            spacing: Theme.small

            Button {
                objectName: "quitInstead"
                text: qsTr("Quit")
                focus: true
                onClicked: other.quitRequested()
            }
            Button {
                objectName: "takeOver"
                text: other.viewModel.takeOverText
                highlighted: true
                enabled: !other.viewModel.isUnderWay
                onClicked: other.viewModel.takeOver()
            }
        }
    }
}
