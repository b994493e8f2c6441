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
            readonly property OfflineBridge bridge: OfflineBridge {
                scenario: scene.scenario
            }
            readonly property SessionsView view: SessionsView {
                parent: scene
                width: root.width
                height: root.height
                viewModel: scene.bridge.viewModels.sessions
            }
        }
    }

    TestCase {
        name: "SessionsView"
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
            tryVerify(() => bridge.ready);
            list = findChild(view, "sessionList");
            tryCompare(list, "count", count);
            list.forceLayout();
        }
        function part(row, name) {
            return Screens.named(Screens.rows(list)[row], name)[0];
        }
        function pick(row, choice) {
            const picker = part(row, "permissionPicker");
            mouseClick(picker);
            tryVerify(() => picker.popup.opened);
            mouseClick(findChild(picker.popup.contentItem, "permissionPickerChoice" + choice));
            tryVerify(() => !picker.popup.visible);
        }

        function test_itSaysWhatAPermissionCannotDo() {
            open("full", 5);
            compare(Screens.named(view, "whatPermissionsDo")[0].text, "A permission guides an agent that uses Velmora as intended. It does not hold one that means to get around it.");
        }

        function test_aRowSaysWhatTheSessionIs() {
            open("full", 5);
            compare(part(0, "sessionTitle").text, "velmora: zsh");
            verify(part(0, "sessionDetail").text.startsWith("/dev/pts/1"));
            compare(part(0, "busy"), undefined);
            compare(part(1, "busy").symbol, "hourglass");
            compare(part(0, "permissionPicker").Accessible.name, "Permission");
            compare(part(0, "permissionPicker").model, ["managed", "allowed", "readOnly", "blocked"]);
            compare([0, 1, 2, 3, 4].map(row => part(row, "permissionPicker").displayText), ["managed", "readOnly", "managed", "allowed", "blocked"]);
            compare(part(0, "showInTerminal").text, "Show in Terminal");
            compare(part(0, "showInTerminal").symbol, "arrow.up.forward.app");
        }

        function test_thePickerSetsThePermission() {
            open("full", 5);
            const session = Screens.rows(list)[0].sessionId;
            pick(0, 3);
            tryVerify(() => bridge.sendCommand(session, "ls") === "SESSION_NOT_ALLOWED");
            compare(list.count, 5);
            compare(part(0, "permissionPicker").displayText, "blocked");
            pick(0, 1);
            tryVerify(() => bridge.sendCommand(session, "ls") === "");
        }

        function test_eachPermissionSaysWhatItMeans() {
            open("full", 5);
            const picker = part(0, "permissionPicker");
            compare(picker.ToolTip.text, "Agents read and type");
            mouseClick(picker);
            tryVerify(() => picker.popup.opened);
            const choices = [0, 1, 2, 3].map(row => findChild(picker.popup.contentItem, "permissionPickerChoice" + row));
            compare(choices.map(choice => Screens.texts(choice)[1]), ["Agents read and type", "Agents read and type, as you allowed", "Agents read only", "Agents neither read nor type"]);
            for (const choice of choices)
                verify(!findChild(choice, "choiceCaption").truncated, choice.text);
            keyClick(Qt.Key_Escape);
        }

        function test_aSessionThatWasUsedSaysSo() {
            open("full", 5);
            verify(!part(0, "sessionDetail").text.includes("last used"));
            compare(bridge.sendCommand(Screens.rows(list)[0].sessionId, "ls"), "");
            tryVerify(() => part(0, "sessionDetail").text.includes("last used 14:05:30"));
        }

        function test_tabFromRefreshShowsThatThePickerHasTheKeyboard() {
            open("full", 5);
            findChild(view, "refreshSessions").forceActiveFocus(Qt.TabFocusReason);
            for (const name of ["permissionPicker", "showInTerminal"]) {
                keyClick(Qt.Key_Tab);
                verify(part(0, name).activeFocus, name);
                verify(part(0, name).visualFocus, name);
            }
            keyClick(Qt.Key_Backtab);
            verify(part(0, "permissionPicker").visualFocus);
        }

        function test_theKeyboardSetsThePermission() {
            open("full", 5);
            const session = Screens.rows(list)[0].sessionId;
            part(0, "permissionPicker").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            tryVerify(() => bridge.sendCommand(session, "ls") === "SESSION_NOT_ALLOWED");
            compare(part(0, "permissionPicker").displayText, "readOnly");
        }

        function test_showInTerminalBringsTheSessionForward() {
            open("full", 5);
            mouseClick(part(1, "showInTerminal"));
            tryVerify(() => bridge.terminalCalls().includes("focus(/dev/pts/2, 2)"));
        }

        function test_whatFailedIsSaidUntilItIsPutAway() {
            open("full", 5);
            bridge.fail("focus");
            mouseClick(part(0, "showInTerminal"));
            const banner = findChild(view, "sessionsProblem");
            tryVerify(() => banner.visible);
            verify(banner.text.length > 0);
            mouseClick(findChild(banner, "dismissBanner"));
            tryVerify(() => !banner.visible);
        }

        function test_theFiltersHideBusyAndReadOnlySessions() {
            open("full", 5);
            mouseClick(findChild(view, "includeBusy"));
            tryCompare(list, "count", 3);
            mouseClick(findChild(view, "includeBusy"));
            mouseClick(findChild(view, "includeReadOnly"));
            tryCompare(list, "count", 4);
            findChild(view, "includeReadOnly").Accessible.toggleAction();
            tryCompare(list, "count", 5);
        }

        function test_withoutSessionsItSaysWhatToDo() {
            open("empty", 0);
            const empty = findChild(view, "noSessions");
            verify(empty.visible);
            compare(empty.title, "No Terminal sessions");
            verify(empty.text.includes("create a managed session from an MCP client."));
            verify(!list.visible);
        }

        function test_refreshListsTheSessionsAgain() {
            open("full", 5);
            const before = bridge.terminalCalls().length;
            mouseClick(findChild(view, "refreshSessions"));
            tryVerify(() => bridge.terminalCalls().slice(before).includes("listSessions"));
        }

        function test_onlyTheRowsInSightExist() {
            open("many", 500);
            verify(Screens.rows(list).length < 40);
            list.positionViewAtEnd();
            tryVerify(() => Screens.rows(list).some(row => row.title === "session 500"));
        }

        function test_theKeyboardScrollsTheListAlong() {
            open("many", 500);
            part(0, "permissionPicker").forceActiveFocus(Qt.TabFocusReason);
            for (let step = 0; step < 40; ++step) {
                tryVerify(() => list.itemAtIndex(Math.floor(step / 2) + 1));
                keyClick(Qt.Key_Tab);
            }
            const row = list.itemAtIndex(20);
            verify(Screens.named(row, "permissionPicker")[0].visualFocus);
            verify(list.contentY > 0);
            const top = () => row.mapToItem(list, 0, 0).y;
            tryVerify(() => top() >= 0 && top() + row.height <= list.height);
        }

        function test_theListKeepsItsPlaceThroughARefresh() {
            open("many", 500);
            list.contentY = 3000;
            mouseClick(findChild(view, "refreshSessions"));
            tryVerify(() => !bridge.viewModels.sessions.isLoading);
            compare(list.contentY, 3000);
        }
    }
}
