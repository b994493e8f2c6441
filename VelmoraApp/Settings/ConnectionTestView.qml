import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// Launches the helper as a client would, and shows what it was answered.
ColumnLayout {
    id: view

    required property ConnectionTest test

    spacing: Theme.small

    Button {
        objectName: "testConnection"
        text: view.test.isUnderWay ? qsTr("Testing…") : qsTr("Test the connection")
        enabled: !view.test.isUnderWay
        symbol: "bolt.horizontal"
        onClicked: view.test.run()
    }
    Label {
        objectName: "testResult"
        Layout.fillWidth: true
        visible: text.length > 0
        text: view.test.result
        color: Theme.colorOf(view.test.meaning)
        wrapMode: Text.Wrap
    }
    SettingsCodeBlock {
        objectName: "testAnswer"
        visible: view.test.answer.length > 0
        name: qsTr("Answer")
        text: view.test.answer
    }
}
