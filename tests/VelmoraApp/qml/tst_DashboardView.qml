import QtQuick
import QtTest
import Velmora
import Velmora.Offline
import Velmora.Style
import "Screens.js" as Screens

Item {
    id: root
    width: 1000
    height: 1400

    Component {
        id: sceneComponent

        Item {
            id: scene

            required property string scenario
            readonly property OfflineBridge bridge: OfflineBridge {
                scenario: scene.scenario
            }
            readonly property DashboardView view: DashboardView {
                parent: scene
                width: root.width
                height: root.height
                viewModel: scene.bridge.viewModels.dashboard
                recentRequests: scene.bridge.viewModels.recentRequests
            }
        }
    }

    TestCase {
        name: "DashboardView"
        when: windowShown

        property var bridge
        property var view

        function open(scenario) {
            const scene = createTemporaryObject(sceneComponent, root, {
                    "scenario": scenario
                });
            bridge = scene.bridge;
            view = scene.view;
            tryVerify(() => bridge.ready);
        }
        function named(name) {
            return Screens.named(view, name)[0];
        }
        function row(name) {
            return [named(name).label, named(name).value, named(name).symbol];
        }

        function test_itShowsTheStateOfTheBridgeAndTheTerminal() {
            open("full");
            tryVerify(() => named("sessionCount").value === "5");
            tryVerify(() => named("lastRequest").value === "14:05:30");
            compare(row("bridgeState"), ["Bridge", "Active", "bolt.horizontal"]);
            compare(row("automation"), ["Automation", "granted", "lock.shield"]);
            compare(row("windowCount"), ["Windows", "5", "macwindow"]);
            compare(row("sessionCount"), ["Sessions", "5", "rectangle.stack"]);
            compare(row("terminalState"), ["Status", "available", "terminal"]);
            compare(row("lastRequest"), ["Last request", "14:05:30", "clock"]);
            compare(named("recentError").label, "Recent error");
            verify(Screens.texts(view).includes("tmux"));
        }

        function test_itListsTheConnectedClients() {
            open("full");
            tryVerify(() => named("client1") !== undefined);
            verify(Screens.texts(view).includes("Connected clients"));
            compare(Screens.texts(named("client0")), ["Coding agent 2.1.0", "4 requests in the last 10 minutes, one is under way"]);
            compare(Screens.texts(named("client1")), ["Review bot 0.9", "1 request in the last 10 minutes, the last at 13:59:30"]);
        }

        function test_itSaysOnTopWhatAnAgentIsDoingAndDidLast() {
            open("full");
            compare(named("nowTitle").text, "Coding agent is sending a command to velmora: zsh (/dev/pts/1)");
            compare(named("nowDetail").text, "since 14:05:24");
            compare(named("lastDeed").text, "Last: Coding agent read velmora: zsh (/dev/pts/1), 14:03:30");
            const now = named("now");
            for (const name of ["togglePause", "nowTitle"])
                verify(Screens.named(now, name)[0]);
            verify(now.mapToItem(view, 0, 0).y < named("bridgeState").mapToItem(view, 0, 0).y);
        }

        function test_whatAnAgentDidLastFollows() {
            open("empty");
            tryVerify(() => named("lastDeed").text === "Last: no agent has called yet");
            compare(named("nowTitle").text, "No agent is at work");
            compare(bridge.sendCommand("00000000-0000-0000-0000-00000000FFFF", "ls"), "SESSION_NOT_FOUND");
            tryVerify(() => named("lastDeed").text.startsWith("Last: Coding agent tried to send a command to "));
            verify(named("lastProblem").text.length > 0);
        }

        function test_eachStateSaysWhatItMeans() {
            open("paused");
            tryVerify(() => named("sessionCount").value === "5");
            compare(named("bridgeState").caption, "Agents may read, but change nothing.");
            compare(named("terminalState").caption, "tmux is running.");
            compare(named("automation").detail, "Velmora may use tmux.");
            compare(named("sessionCount").caption, "Agents may type into 3 of them.");
        }

        function test_thePauseButtonStopsAndResumesChanges() {
            open("full");
            compare(named("togglePause").text, "Pause MCP changes");
            mouseClick(named("togglePause"));
            tryVerify(() => named("bridgeState").value === "Paused");
            compare(named("togglePause").text, "Resume MCP changes");
            const session = bridge.firstSession();
            compare(bridge.sendCommand(session, "ls"), "MCP_PAUSED");
            tryVerify(() => named("recentError").value === "MCP change operations are paused.");
            named("togglePause").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => named("bridgeState").value === "Active");
            compare(bridge.sendCommand(session, "ls"), "");
        }

        function test_aPausedBridgeSaysSo() {
            open("paused");
            tryVerify(() => named("bridgeState").value === "Paused");
            compare(named("togglePause").text, "Resume MCP changes");
        }

        function test_refreshAsksTheTerminalAgain() {
            open("full");
            const before = bridge.terminalCalls().length;
            mouseClick(named("refreshStatus"));
            tryVerify(() => bridge.terminalCalls().slice(before).includes("listSessions"));
        }

        function test_deniedAutomationIsWarnedOf() {
            open("denied");
            tryVerify(() => named("automation").value === "denied");
            const banners = Screens.all(view, item => item.symbol === "exclamationmark.triangle" && item.dismissed !== undefined);
            compare(banners.length, 1);
            verify(banners[0].text.startsWith("Terminal automation permission is required."));
            compare(named("terminalState").value, "unavailable");
        }

        function test_itShowsTheNewestRequests() {
            open("full");
            tryVerify(() => named("requests") !== undefined);
            const list = named("requests");
            tryCompare(list, "count", 5);
            compare(Screens.rows(list)[0].toolName, "terminal_send_command");
            compare(bridge.sendCommand(bridge.firstSession(), "ls"), "");
            tryVerify(() => Screens.rows(list)[0].status === "delivered");
            compare(list.count, 5);
        }

        function test_withoutRequestsItSaysSo() {
            open("empty");
            bridge.forgetRequests();
            tryVerify(() => Screens.texts(view).includes("No requests yet"));
            verify(Screens.texts(view).includes("No clients connected"));
        }

        function test_whatIsWrongAndTheSwitchStayInSight() {
            open("denied");
            tryVerify(() => named("automation").value === "denied");
            view.height = 300;
            waitForRendering(view);
            for (const contentY of [0, 200]) {
                view.contentY = contentY;
                const banners = Screens.all(view, item => item.symbol === "exclamationmark.triangle" && item.dismissed !== undefined);
                for (const item of [named("togglePause"), banners[0]]) {
                    const top = item.mapToItem(view, 0, 0).y;
                    verify(top >= 0 && top + item.height < view.height, top);
                }
            }
        }

        function test_aBridgeThatNobodyReachesIsStartedAgain() {
            open("deaf");
            verify(named("servingProblem").text.startsWith("MCP clients cannot connect. "));
            bridge.unblockSocket();
            const button = Screens.named(named("servingProblem"), "bannerAction")[0];
            compare(button.text, "Restart the bridge");
            mouseClick(button);
            tryVerify(() => named("servingProblem") === undefined);
        }

        function test_whileClientsConnectNoRestartIsOffered() {
            open("full");
            compare(named("servingProblem"), undefined);
        }
    }
}
