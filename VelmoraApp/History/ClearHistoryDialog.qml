import Velmora
import Velmora.Style

// Asks before the history is deleted.
Dialog {
    id: dialog

    required property HistoryClearing clearing

    objectName: "clearDialog"
    visible: clearing.confirmClear
    title: qsTr("Delete Velmora history?")
    text: qsTr("This does not change Terminal scrollback or shell history.")
    confirmText: qsTr("Delete History")
    destructive: true
    onAccepted: clearing.confirm()
    onRejected: clearing.cancel()
}
