import QtQuick
import QtTest
import Velmora
import Velmora.Offline
import Velmora.Style
import "Screens.js" as Screens

Item {
    id: root
    width: 640
    height: 3000

    Component {
        id: sceneComponent

        Item {
            id: scene

            required property string scenario
            readonly property OfflineBridge bridge: OfflineBridge {
                scenario: scene.scenario
            }
            readonly property RecentRequestsView view: RecentRequestsView {
                parent: scene
                width: root.width
                height: root.height
                records: scene.bridge.viewModels.history.records
            }
        }
    }

    TestCase {
        name: "RecentRequestsView"
        when: windowShown

        property var bridge
        property var list

        function open(scenario, count) {
            const scene = createTemporaryObject(sceneComponent, root, {
                    "scenario": scenario
                });
            bridge = scene.bridge;
            list = scene.view;
            tryVerify(() => bridge.ready);
            tryCompare(list, "count", count);
            list.forceLayout();
        }
        function row(wanted) {
            return Screens.rows(list).find(wanted);
        }
        function label(item, name) {
            return Screens.named(item, name)[0];
        }

        function test_aRequestSaysWhatWasAskedAndHowItEnded() {
            open("full", 13);
            const sent = row(item => item.command.startsWith("cmake"));
            compare(label(sent, "toolName").text, "terminal_send_command");
            compare(label(sent, "status").text, "delivered");
            verify(label(sent, "target").text.includes("velmora: zsh"));
            verify(label(sent, "times").text.includes("Received 14:01:30"));
            verify(label(sent, "times").text.includes("Completed 14:01:30"));
            compare(label(sent, "command").label, "Command");
            compare(label(sent, "output"), undefined);
            compare(label(sent, "note").text, "Delivered to Terminal; execution result is not tracked.");
        }

        function test_aCommandWhoseTextWasNotKeptSaysSo() {
            open("full", 13);
            compare(bridge.sendCommand(bridge.firstSession(), "ls"), "");
            tryCompare(list, "count", 14);
            tryVerify(() => Screens.rows(list)[0].status === "delivered");
            compare(label(Screens.rows(list)[0], "commandGap").text, "The text of this command was not kept.");
            compare(label(row(item => item.command.startsWith("cmake")), "commandGap"), undefined);
        }

        function test_onlyADeliveredCommandCarriesTheNote() {
            open("full", 13);
            const noted = Screens.rows(list).filter(item => item.note !== "");
            verify(noted.length > 0);
            for (const item of noted)
                compare([item.toolName, item.status], ["terminal_send_command", "delivered"]);
        }

        function test_aRequestWithoutASessionSaysSo() {
            open("full", 13);
            compare(row(item => item.toolName === "terminal_status").target, "No target");
        }

        function test_oneUnderWayHasNoEnd() {
            open("full", 13);
            const running = row(item => item.status === "processing");
            verify(!label(running, "times").text.includes("Completed"));
        }

        function test_whatWasReadStandsUnderOutput() {
            open("full", 13);
            const read = row(item => item.output !== "");
            compare(label(read, "output").label, "Output");
            verify(Screens.texts(read).includes(read.output));
        }

        function test_whatWentWrongIsSaid() {
            open("full", 13);
            compare(label(row(item => item.status === "failed"), "error").text, "Terminal screen capture is unavailable.");
        }

        function test_onlyWhatWentWrongHasAFilledBadge() {
            open("full", 13);
            for (const item of Screens.rows(list)) {
                compare(label(item, "status").filled, ["rejected", "failed"].includes(item.status), item.status);
                verify(label(item, "status").help.endsWith("."));
            }
        }

        function test_aLongOutputUnfoldsAndFolds() {
            open("long", 3);
            const read = row(item => item.output !== "");
            const folded = read.height;
            const button = label(read, "foldRequest");
            compare(button.text, "Show all");
            mouseClick(button);
            tryVerify(() => read.height > 2 * folded);
            compare(button.text, "Show less");
            button.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => read.height < 2 * folded);
        }

        function test_theNoteLeavesRoomForItsButton() {
            open("long", 3);
            const sent = row(item => item.note !== "");
            const button = label(sent, "foldRequest");
            tryVerify(() => button.x > 0 && Math.abs(button.x + button.width - button.parent.width) < 1);
            verify(label(sent, "note").width <= button.x);
        }

        function test_theKeyboardUnfoldsTheCurrentRequest() {
            open("long", 3);
            list.forceActiveFocus(Qt.TabFocusReason);
            for (let step = 0; step < 2; ++step)
                keyClick(Qt.Key_Down);
            const read = list.currentItem;
            verify(read.output !== "");
            const folded = read.height;
            keyClick(Qt.Key_Return);
            tryVerify(() => read.height > folded);
        }
    }
}
