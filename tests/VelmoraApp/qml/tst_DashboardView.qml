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
            compare(named("client0").text, "Coding agent 2.1.0");
            compare(named("client1").text, "Review bot 0.9");
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
            compare(Screens.rows(list)[2].toolName, "terminal_send_command");
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
