pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Style

// Requests, newest first, for the history and the dashboard. Only visible rows exist.
ListView {
    id: list

    required property RecordListModel records
    // The one request that is shown in full.
    property string unfoldedRequest
    // The keyboard leads to the current row, which stays in sight.
    property bool walks: false

    objectName: "requests"
    model: records
    clip: true
    reuseItems: true
    // Rows created ahead of time are created asynchronously, which fails when the list shrinks meanwhile.
    cacheBuffer: 0
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: count > 0
    currentIndex: -1
    highlightMoveDuration: 0
    ScrollBar.vertical: ScrollBar {
    }
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Requests")

    function showCurrent() {
        if (walks && currentIndex >= 0)
            positionViewAtIndex(currentIndex, ListView.Contain);
    }
    function toggleFold(requestId: string) {
        walks = false;
        unfoldedRequest = unfoldedRequest === requestId ? "" : requestId;
    }

    onMovementStarted: walks = false
    // Qt guesses where a row far away is, and lays out its texts only later.
    Timer {
        id: settling

        interval: 0
        onTriggered: list.showCurrent()
    }
    Connections {
        target: list.walks ? list.currentItem : null

        function onYChanged() {
            settling.restart();
        }
        function onHeightChanged() {
            settling.restart();
        }
    }

    onActiveFocusChanged: if (activeFocus && currentIndex < 0)
        currentIndex = Math.max(0, indexAt(0, contentY + Theme.medium))
    Keys.onReturnPressed: event => {
        if (currentItem && !event.isAutoRepeat)
            (currentItem as RequestRow).foldToggled();
    }
    Keys.onPressed: event => {
        const page = Math.max(1, Math.floor(height / Theme.rowHeight / 2));
        const steps = new Map([[Qt.Key_PageUp, -page], [Qt.Key_PageDown, page], [Qt.Key_Home, -count], [Qt.Key_End, count]]);
        event.accepted = steps.has(event.key);
        if (!event.accepted)
            return;
        currentIndex = Math.max(0, Math.min(count - 1, currentIndex + steps.get(event.key)));
        walks = true;
        showCurrent();
    }

    delegate: RequestRow {
        required property int index

        width: list.width
        first: index === 0
        current: ListView.isCurrentItem && list.activeFocus
        unfolded: list.unfoldedRequest === requestId
        onFoldToggled: list.toggleFold(requestId)
    }
}
