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
            readonly property HelpView view: HelpView {
                parent: scene
                width: root.width
                height: root.height
                viewModel: scene.bridge.viewModels.help
            }
        }
    }

    TestCase {
        name: "HelpView"
        when: windowShown

        property var bridge
        property var view
        readonly property var tools: ["terminal_status", "terminal_create_session", "terminal_send_command", "terminal_send_key", "terminal_read_output", "terminal_focus_session"]

        function open(scenario) {
            const scene = createTemporaryObject(sceneComponent, root, {
                    "scenario": scenario
                });
            bridge = scene.bridge;
            view = scene.view;
            verify(waitForRendering(view));
            tryVerify(() => bridge.ready);
        }
        function part(name) {
            return Screens.named(view, name)[0];
        }
        function copyButtons() {
            return Screens.all(view, item => item.objectName.endsWith("Copy"));
        }
        function headings() {
            return Screens.all(view, item => item.Accessible.role === Accessible.Heading).map(label => label.text);
        }
        function reveal(item) {
            item.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => {
                    const top = item.mapToItem(view, 0, 0).y;
                    return top >= 0 && top + item.height <= view.height;
                });
        }
        function chooseLanguage(index) {
            mouseClick(part("helpLanguage"));
            tryVerify(() => part("helpLanguage").popup.opened);
            mouseClick(findChild(part("helpLanguage").popup.contentItem, "helpLanguageChoice" + index));
            tryVerify(() => !part("helpLanguage").popup.visible);
        }

        function test_itLeadsThroughTheSteps() {
            open("macOS");
            compare(headings(), ["Help", "Install Location", "1. Allow macOS Permissions", "2. Register the stdio Helper", "3. Check Connection Status", "4. Create a Managed Terminal Window", "5. Send a Command", "6. Send Special Keys", "7. Read Output", "8. Show a Session in Terminal", "Existing Sessions"]);
        }

        function test_onLinuxItSpeaksOfTmux() {
            open("full");
            compare(headings()[2], "1. Start tmux");
            compare(part("VelmoraCode").text, "/usr/bin/velmora-app");
            compare(Screens.texts(view).filter(text => text.includes("macOS") || text.includes("Terminal.app")), []);
        }

        function test_thePickerChangesTheLanguage() {
            open("macOS");
            compare(part("helpLanguage").Accessible.name, "Language");
            compare(part("helpLanguage").displayText, "English");
            chooseLanguage(1);
            compare(part("helpLanguage").displayText, "한국어");
            compare(part("helpLanguage").Accessible.name, "언어");
            compare(headings()[2], "1. macOS 권한 허용");
            compare(part("mcpServersCopy").text, "복사");
            chooseLanguage(0);
            compare(headings()[2], "1. Allow macOS Permissions");
        }

        function test_theKeyboardChangesTheLanguage() {
            open("full");
            part("helpLanguage").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => part("helpLanguage").popup.opened);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            tryVerify(() => headings()[1] === "설치 위치");
            verify(part("helpLanguage").activeFocus);
        }

        function test_anotherLanguageLeavesThePageWhereItIs() {
            open("full");
            view.contentY = 900;
            const button = part("terminal_statusCopy");
            bridge.viewModels.help.languageIndex = 1;
            verify(waitForRendering(view));
            compare(view.contentY, 900);
            compare(part("terminal_statusCopy"), button);
        }

        function test_everyButtonCopiesWhatStandsAboveIt() {
            open("full");
            compare(copyButtons().map(button => button.objectName), ["Velmora", "mcpServers", "openclaw.json", "openclaw mcp", "velmora", ...tools].map(name => name + "Copy"));
            for (const button of copyButtons()) {
                reveal(button);
                mouseClick(button);
                const code = part(button.objectName.replace("Copy", "Code"));
                verify(code.text.length > 0);
                compare(bridge.pasteboard(), code.text);
                compare(button.text, "Copied");
            }
        }

        function test_theKeyboardCopies() {
            open("full");
            reveal(part("terminal_send_keyCopy"));
            keyClick(Qt.Key_Return);
            compare(JSON.parse(bridge.pasteboard()).arguments.key, "upArrow");
            reveal(part("terminal_focus_sessionCopy"));
            keyClick(Qt.Key_Space);
            compare(JSON.parse(bridge.pasteboard()).name, "terminal_focus_session");
        }

        function test_theCopiedCallsAreJSON() {
            open("full");
            const calls = tools.map(tool => JSON.parse(part(tool + "Code").text));
            compare(calls.map(call => call.name), tools);
            compare(calls[0].arguments, {});
            compare(calls[1].arguments, {
                    "kind": "window"
                });
        }

        function test_theButtonsSayWhatTheyCopyInEachLanguage() {
            open("macOS");
            compare(part("VelmoraCopy").Accessible.name, "Copy install path");
            compare(part("terminal_statusCopy").Accessible.name, "Copy terminal_status call example");
            chooseLanguage(1);
            compare(part("VelmoraCopy").Accessible.name, "설치 경로 복사");
            compare(part("mcpServersCopy").Accessible.name, "MCP 설정 복사");
            compare(part("terminal_statusCopy").Accessible.name, "terminal_status 호출 예시 복사");
            reveal(part("terminal_statusCopy"));
            mouseClick(part("terminal_statusCopy"));
            compare(part("terminal_statusCopy").text, "복사됨");
            compare(part("terminal_statusCopy").Accessible.name, "복사됨");
            tryCompare(part("terminal_statusCopy"), "text", "복사");
        }

        function test_aLongerLookAtAButtonSaysWhatItCopies() {
            open("full");
            const button = part("VelmoraCopy");
            button.hoverEnabled = true;
            mouseMove(button, 5, 5);
            mouseMove(button, 8, 8);
            tryVerify(() => button.ToolTip.toolTip.opened);
            compare(button.ToolTip.toolTip.text, "Copy install path");
        }

        function test_theRegistrationNamesTheHelper() {
            open("full");
            compare(JSON.parse(part("mcpServersCode").text).mcpServers.terminal.command, "/usr/bin/velmora");
            compare(JSON.parse(part("openclaw.jsonCode").text).mcp.servers.terminal.command, "/usr/bin/velmora");
            compare(part("openclaw mcpCode").text.split("\n"), ["openclaw mcp add terminal --command \"/usr/bin/velmora\"", "openclaw mcp doctor terminal --probe"]);
            compare(part("velmoraCode").text, "/usr/bin/velmora");
        }

        function test_nothingIsCutOff_data() {
            return [{
                    "tag": "tmux in English",
                    "scenario": "full",
                    "language": 0
                }, {
                    "tag": "tmux in Korean",
                    "scenario": "full",
                    "language": 1
                }, {
                    "tag": "Terminal.app in English",
                    "scenario": "macOS",
                    "language": 0
                }, {
                    "tag": "Terminal.app in Korean",
                    "scenario": "macOS",
                    "language": 1
                }];
        }
        function test_nothingIsCutOff(data) {
            open(data.scenario);
            chooseLanguage(data.language);
            const outside = Screens.all(view, item => {
                    const left = item.mapToItem(view, 0, 0).x;
                    return item.text !== undefined && (left < 0 || left + Math.max(item.width, item.paintedWidth ?? 0) > view.width);
                });
            compare(outside.map(item => item.text), []);
            const blocks = Screens.all(view, item => item.objectName.endsWith("Code"));
            compare(blocks.length, copyButtons().length);
            compare(blocks.filter(block => block.height !== part(block.objectName + "Text").implicitHeight).map(block => block.objectName), []);
            const elided = Screens.all(view, item => item.truncated === true);
            compare(elided.map(item => item.text), []);
        }

        function test_whatTheKeyboardReachesComesIntoSight() {
            open("full");
            part("helpLanguage").forceActiveFocus(Qt.TabFocusReason);
            for (let step = 0; step < 22; ++step)
                keyClick(Qt.Key_Tab);
            verify(part("terminal_focus_sessionCopy").activeFocus);
            verify(view.contentY > 0);
            const bottom = part("terminal_focus_sessionCopy").mapToItem(view, 0, 0).y + part("terminal_focus_sessionCopy").height;
            verify(bottom <= view.height);
        }
    }
}
