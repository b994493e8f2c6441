import QtQuick
import QtTest
import Velmora
import Velmora.Offline
import Velmora.Style
import "Screens.js" as Screens

Item {
    id: root
    width: 544
    height: 480

    Component {
        id: sceneComponent

        Item {
            id: scene

            required property string scenario
            property int countWhenReady: -1
            readonly property OfflineBridge bridge: OfflineBridge {
                scenario: scene.scenario
                onReadyChanged: {
                    viewModels.history.includeOwn = true;
                    scene.countWhenReady = viewModels.history.totalCount;
                    viewModels.history.includeOwn = false;
                }
            }
            readonly property HistoryView view: HistoryView {
                parent: scene
                width: root.width
                height: root.height
                viewModel: scene.bridge.viewModels.history
            }
        }
    }

    TestCase {
        name: "HistoryView"
        when: windowShown

        property var bridge
        property var view
        property var list

        function open(scenario, count) {
            const scene = createTemporaryObject(sceneComponent, root, {
                    "scenario": scenario
                });
            bridge = scene.bridge;
            view = scene.view;
            list = findChild(view, "requests");
            tryVerify(() => bridge.ready);
            tryCompare(list, "count", count);
            list.forceLayout();
        }
        function pick(name, choice) {
            const picker = findChild(view, name);
            mouseClick(picker);
            tryVerify(() => picker.popup.opened);
            mouseClick(findChild(picker.popup.contentItem, name + "Choice" + choice));
            tryVerify(() => !picker.popup.visible);
        }
        function type(text) {
            mouseClick(findChild(view, "searchHistory"));
            for (const letter of text)
                keyClick(letter);
        }

        // What the tests rely on, however late the records arrive: the scenario's and those of the refresh itself.
        function test_aBridgeThatIsReadyShowsEveryRecord() {
            open("full", 13);
            compare(view.parent.countWhenReady, 15);
        }

        function test_itIsTheRequestHistory() {
            open("full", 13);
            compare(findChild(view, "screenTitle").text, "Request History");
            compare(findChild(view, "searchHistory").placeholderText, "Search history");
            compare(findChild(view, "toolPicker").displayText, "All tools");
            compare(findChild(view, "toolPicker").count, 10);
            compare(findChild(view, "statusPicker").count, 8);
        }

        function test_theSearchFindsWhileOneTypes() {
            open("full", 13);
            type("CMAKE");
            tryCompare(list, "count", 1);
            tryVerify(() => Screens.rows(list)[0]?.command.startsWith("cmake --build"));
            keyClick(Qt.Key_Escape);
            tryCompare(list, "count", 13);
        }

        function test_theSearchTakesHangul() {
            open("full", 13);
            findChild(view, "searchHistory").text = "문서";
            tryCompare(list, "count", 1);
        }

        function test_theScreensOwnRequestsAreFoldedAway() {
            open("full", 13);
            mouseClick(findChild(view, "includeOwn"));
            tryCompare(list, "count", 15);
            findChild(view, "includeOwn").Accessible.toggleAction();
            tryCompare(list, "count", 13);
        }

        function test_theToolPickerLeavesOneTool() {
            open("full", 13);
            pick("toolPicker", 5);
            compare(findChild(view, "toolPicker").displayText, "terminal_send_command");
            tryCompare(list, "count", 4);
            pick("toolPicker", 0);
            tryCompare(list, "count", 13);
        }

        function test_theStatusPickerLeavesOneStatus() {
            open("full", 13);
            pick("statusPicker", 6);
            compare(findChild(view, "statusPicker").displayText, "failed");
            tryCompare(list, "count", 1);
        }

        function test_nothingFoundIsNotNothingThere() {
            open("full", 13);
            type("zzzz");
            tryCompare(list, "count", 0);
            const empty = findChild(view, "emptyHistory");
            verify(empty.visible);
            compare(empty.title, "No matching requests");
        }

        function test_clearAsksFirst() {
            open("full", 13);
            mouseClick(findChild(view, "clearHistory"));
            const dialog = findChild(view, "clearDialog");
            tryVerify(() => dialog.opened);
            compare(dialog.title, "Delete Velmora history?");
            compare(dialog.text, "This does not change Terminal scrollback or shell history.");
            compare(findChild(dialog.contentItem, "dialogConfirm").text, "Delete History");
            keyClick(Qt.Key_Escape);
            tryVerify(() => !dialog.visible);
            compare(list.count, 13);
            mouseClick(findChild(view, "clearHistory"));
            tryVerify(() => dialog.opened);
            mouseClick(findChild(dialog.contentItem, "dialogConfirm"));
            tryCompare(list, "count", 0);
            tryVerify(() => findChild(view, "emptyHistory").visible);
            compare(findChild(view, "emptyHistory").title, "No requests yet");
        }

        function test_anEmptyHistoryStillAsks() {
            open("empty", 0);
            bridge.forgetRequests();
            tryCompare(list, "count", 0);
            mouseClick(findChild(view, "clearHistory"));
            tryVerify(() => findChild(view, "clearDialog").opened);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !findChild(view, "clearDialog").visible);
        }

        function test_aNewRequestAppearsOnTop() {
            open("full", 13);
            compare(bridge.sendCommand(bridge.firstSession(), "ls"), "");
            tryCompare(list, "count", 14);
            tryVerify(() => Screens.rows(list)[0].y >= list.contentY && Screens.rows(list)[0].toolName === "terminal_send_command");
        }

        function test_aPollKeepsThePlaceThatOneReads() {
            open("many", 9990);
            list.contentY = 3000;
            verify(waitForRendering(list));
            const read = () => list.itemAt(0, list.contentY + list.height / 2).requestId;
            const before = read();
            compare(bridge.sendCommand(bridge.firstSession(), "ls"), "");
            tryCompare(list, "count", 9991);
            compare(read(), before);
        }

        function test_onlyTheRowsInSightExist() {
            open("many", 9990);
            verify(Screens.rows(list).length < 40);
        }

        function test_theKeyboardWalksTheList() {
            open("many", 9990);
            list.forceActiveFocus(Qt.TabFocusReason);
            compare(list.currentIndex, 0);
            verify(list.currentItem.current);
            keyClick(Qt.Key_Down);
            compare(list.currentIndex, 1);
            keyClick(Qt.Key_PageDown);
            verify(list.currentIndex > 2);
            keyClick(Qt.Key_End);
            compare(list.currentIndex, 9989);
            tryVerify(() => list.currentItem.mapToItem(list, 0, list.currentItem.height).y <= list.height);
            keyClick(Qt.Key_Home);
            compare(list.currentIndex, 0);
            tryVerify(() => list.atYBeginning);
        }
    }
}
