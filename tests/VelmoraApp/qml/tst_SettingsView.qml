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

            readonly property OfflineBridge bridge: OfflineBridge {
                scenario: "full"
            }
            readonly property SettingsView view: SettingsView {
                parent: scene
                width: root.width
                height: root.height
                viewModel: scene.bridge.viewModels.settings
            }
        }
    }

    TestCase {
        id: test
        name: "SettingsView"
        when: windowShown

        property var bridge
        property var view

        function init() {
            const scene = createTemporaryObject(sceneComponent, root);
            bridge = scene.bridge;
            view = scene.view;
            tryVerify(() => bridge.ready);
        }
        function named(name) {
            return Screens.named(view, name)[0];
        }
        function page(name) {
            mouseClick(named(name + "Tab"));
            tryVerify(() => named(name + "Settings") !== undefined);
            tryVerify(() => Screens.isLaidOut(test, view));
        }
        // Scrolls a control into sight, as the keyboard does, and clicks it.
        function click(name, x) {
            const control = named(name);
            tryVerify(() => Screens.isLaidOut(test, view));
            control.forceActiveFocus(Qt.TabFocusReason);
            waitForRendering(view);
            mouseClick(control, x);
        }
        function stored() {
            const text = bridge.settingsFile();
            return text === "" ? {} : JSON.parse(text).settings;
        }

        function test_theTabsShowTheirPages() {
            verify(named("generalSettings"));
            page("privacy");
            verify(!named("generalSettings"));
            page("connection");
            compare(view.viewModel.page, 2);
            named("privacyTab").Accessible.pressAction();
            tryVerify(() => named("privacySettings") !== undefined);
            keyClick(Qt.Key_Left);
            compare(named("generalTab").symbol, "gearshape");
            compare(named("privacyTab").symbol, "hand.raised");
        }

        function test_theKeyboardChangesThePage() {
            named("generalTab").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Space);
            tryVerify(() => named("privacySettings") !== undefined);
        }

        function test_launchAtLoginShowsWhatTheSystemSays() {
            click("launchAtLogin");
            verify(named("launchAtLogin").checked);
            verify(!named("launchAtLoginProblem"));
            bridge.refuseLoginItem(true);
            click("launchAtLogin");
            verify(named("launchAtLogin").checked, "the switch goes back");
            compare(named("launchAtLoginProblem").text, "Login item could not be changed. Review Login Items in System Settings.");
            bridge.refuseLoginItem(false);
            click("launchAtLogin");
            verify(!named("launchAtLogin").checked);
            verify(!named("launchAtLoginProblem"));
        }

        function test_theMenuBarSwitchIsRemembered() {
            verify(named("menuBarEnabled").checked);
            click("menuBarEnabled");
            verify(!view.viewModel.general.menuBarEnabled);
            verify(!named("noTray"));
        }

        function test_whatHoldsInWindowsOfAgentsIsSavedAtOnce() {
            verify(!named("ownBusyInput").checked);
            click("ownBusyInput");
            tryVerify(() => stored().allowOwnBusySessionInput === true);
            verify(named("shellIntegration").checked);
            click("shellIntegration");
            tryVerify(() => stored().shellIntegration === "off");
            click("ownBusyInput");
            tryVerify(() => stored().allowOwnBusySessionInput === undefined);
            verify(!named("settingsProblem"));
        }

        function type(text) {
            for (const character of text)
                keyClick(character);
            keyClick(Qt.Key_Return);
        }
        function test_anotherTmuxServerIsNamedByItsSocket() {
            const field = named("tmuxSocket");
            field.forceActiveFocus(Qt.TabFocusReason);
            type("work");
            compare(named("settingsProblem").text, "The path of a socket has to begin with /.");
            compare(field.text, "work", "it can be mended");
            compare(stored().tmuxSocket, undefined);
            field.selectAll();
            type("/t/work ");
            tryVerify(() => stored().tmuxSocket === "/t/work");
            tryCompare(field, "text", "/t/work");
            verify(!named("settingsProblem"));
            field.clear();
            named("shellIntegration").forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => stored().tmuxSocket === undefined);
        }

        function test_updatesAreLookedForWhenThePersonAsks() {
            verify(named("lastChecked").text.startsWith("Last checked "));
            click("automaticUpdates");
            verify(named("automaticUpdates").checked);
            click("checkForUpdates");
            verify(!named("checkForUpdates").enabled, "one check at a time");
            bridge.finishUpdateCheck("Velmora is up to date.");
            verify(named("checkForUpdates").enabled);
            compare(named("checkResult").text, "Velmora is up to date.");
        }

        function test_thePermissionSaysWhatIsThere() {
            compare(named("permissionTitle").text, "tmux");
            verify(named("permissionInstruction").text.includes("tmux"));
            verify(!named("openPermission"), "there is no pane to open");
        }

        function test_aSwitchSavesAtOnce() {
            page("privacy");
            click("persistentHistoryEnabled");
            tryVerify(() => stored().persistentHistoryEnabled === true);
            click("allowBusySessionInput");
            tryVerify(() => stored().allowBusySessionInput === true);
            named("deleteOnAppExit").Accessible.toggleAction();
            tryVerify(() => stored().deleteOnAppExit === false);
        }

        function test_theStepperStopsAtItsBounds() {
            page("privacy");
            const stepper = named("retentionDaysStepper");
            compare(stepper.displayText, "7 days");
            stepper.forceActiveFocus(Qt.TabFocusReason);
            for (let press = 0; press < 10; ++press)
                keyClick(Qt.Key_Down);
            compare(stepper.value, 1);
            compare(stepper.displayText, "1 days");
            tryVerify(() => stored().retentionDays === 1);
            view.viewModel.privacy.retentionDays = 364;
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            compare(stepper.value, 365);
            tryVerify(() => stored().retentionDays === 365);
        }

        function test_theButtonsOfTheStepperStep() {
            page("privacy");
            const stepper = named("maximumRecordCountStepper");
            compare(stepper.displayText, "10,000 records");
            stepper.forceActiveFocus(Qt.TabFocusReason);
            waitForRendering(view);
            mouseClick(stepper.up.indicator);
            compare(stepper.value, 10000);
            mouseClick(stepper.down.indicator);
            compare(stepper.displayText, "9,900 records");
            tryVerify(() => stored().maximumRecordCount === 9900);
            named("outputPreviewMaxCharactersStepper").increase();
        }

        function test_storingIsOffWithoutAHistory() {
            page("privacy");
            verify(!named("storeCommandBody").enabled);
            verify(!named("storeOutputPreview").enabled);
        }

        function test_whatIsSensitiveIsStoredOnlyAfterTheWarning_data() {
            return [{
                    "tag": "storeCommandBody"
                }, {
                    "tag": "storeOutputPreview"
                }];
        }
        function test_whatIsSensitiveIsStoredOnlyAfterTheWarning(data) {
            page("privacy");
            click("persistentHistoryEnabled");
            tryVerify(() => stored().persistentHistoryEnabled === true);
            const before = bridge.settingsFile();
            const dialog = findChild(view, "warningDialog");
            click(data.tag);
            tryVerify(() => dialog.opened);
            compare(dialog.title, "Sensitive data warning");
            compare(dialog.text, "This content stays local but may contain secrets. Continue?");
            keyClick(Qt.Key_Escape);
            tryVerify(() => !dialog.visible);
            verify(!named(data.tag).checked);
            compare(bridge.settingsFile(), before);
            click(data.tag);
            tryVerify(() => dialog.opened);
            compare(findChild(dialog.contentItem, "dialogConfirm").text, "Enable");
            mouseClick(findChild(dialog.contentItem, "dialogConfirm"));
            tryVerify(() => stored()[data.tag] === true);
            verify(named(data.tag).checked);
            click(data.tag);
            tryVerify(() => stored()[data.tag] === false);
            verify(!dialog.visible);
        }

        function test_thePolicyIsPickedAndSaysWhatItMeans() {
            page("privacy");
            verify(named("policyChoice0").checked);
            compare(named("policyChoice0").text, "Safe: managed sessions only");
            compare(Screens.named(view, "choiceCaption").map(label => label.text), ["Agents may type into every idle session of yours.", "Agents may read your sessions, and type only into windows that they opened."]);
            compare(named("sessionPolicyScope").text, "For sessions found from now on");
            named("policyChoice0").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
            tryVerify(() => stored().sessionPolicy === "selective");
            verify(named("policyChoice1").checked && named("policyChoice1").activeFocus);
            click("policyChoice0");
            tryVerify(() => stored().sessionPolicy === "safe");
        }

        function test_theSelectivePolicyOffersToRestrictTheKnownSessions() {
            page("privacy");
            verify(!named("restrictKnownSessions"));
            click("policyChoice1");
            tryVerify(() => named("restrictKnownSessions") !== undefined);
            compare(named("restrictKnownSessions").text, "Make the 3 known sessions read-only now");
            click("restrictKnownSessions");
            tryVerify(() => named("restrictKnownSessions") === undefined);
            compare(bridge.sendCommand(bridge.firstSession(), "ls"), "SESSION_NOT_ALLOWED");
        }

        function test_aProblemStaysInSightHoweverFarOneScrolls() {
            page("privacy");
            bridge.failSaves();
            click("policyChoice1");
            tryVerify(() => named("settingsProblem") !== undefined);
            waitForRendering(view);
            for (const contentY of [0, 400]) {
                named("privacySettings").contentY = contentY;
                const top = named("settingsProblem").mapToItem(view, 0, 0).y;
                verify(top > 0 && top + named("settingsProblem").height < view.height, top);
            }
        }

        function test_aFailedSaveIsSaidAndTheDraftStays() {
            page("privacy");
            bridge.failSaves();
            click("deleteOnAppExit");
            tryVerify(() => named("settingsProblem") !== undefined);
            verify(!named("deleteOnAppExit").checked);
            waitForRendering(view);
            mouseClick(Screens.named(named("settingsProblem"), "dismissBanner")[0]);
            tryVerify(() => named("settingsProblem") === undefined);
        }

        function test_clearingAsksFirst() {
            page("privacy");
            click("clearRequestHistory");
            const dialog = findChild(view, "clearDialog");
            tryVerify(() => dialog.opened);
            compare(findChild(dialog.contentItem, "dialogConfirm").text, "Delete History");
            mouseClick(findChild(dialog.contentItem, "dialogConfirm"));
            tryVerify(() => bridge.viewModels.history.totalCount === 0);
        }

        function test_everythingOfTheConnectionCanBeCopied_data() {
            return [{
                    "tag": "configuration",
                    "title": "Copy configuration",
                    "content": "\"mcpServers\""
                }, {
                    "tag": "openClawConfiguration",
                    "title": "Copy OpenClaw JSON",
                    "content": "\"servers\""
                }, {
                    "tag": "openClawCommands",
                    "title": "Copy OpenClaw CLI",
                    "content": "openclaw mcp add terminal --command \"/usr/bin/velmora\"\nopenclaw mcp doctor terminal --probe"
                }, {
                    "tag": "clientSnippet",
                    "title": "Copy",
                    "content": "/usr/bin/velmora"
                }, {
                    "tag": "helperPath",
                    "title": "Copy helper path",
                    "content": "/usr/bin/velmora"
                }];
        }
        function test_everythingOfTheConnectionCanBeCopied(data) {
            page("connection");
            const button = named("copy" + data.tag[0].toUpperCase() + data.tag.slice(1));
            compare(button.text, data.title);
            button.forceActiveFocus(Qt.TabFocusReason);
            waitForRendering(view);
            mouseClick(button);
            compare(button.text, "Copied");
            compare(button.Accessible.name, "Copied");
            verify(bridge.pasteboard().includes(data.content), bridge.pasteboard());
            compare(bridge.pasteboard(), named(data.tag).text);
        }

        function test_theConnectionIsShownInTheFormThatIsChosen() {
            page("connection");
            const plain = named("configuration").text;
            verify(named("openClawCommands"));
            click("extendedForm");
            verify(named("configuration").text.includes("--extended"));
            verify(named("clientSnippet").text.includes("--extended"));
            verify(!named("openClawCommands"), "they cannot ask for it");
            click("extendedForm");
            compare(named("configuration").text, plain);
        }

        function test_aCopiedButtonReturnsToItsTitle() {
            page("connection");
            const button = named("copyConfiguration");
            button.Accessible.pressAction();
            compare(button.text, "Copied");
            tryCompare(button, "text", "Copy configuration", 5000);
        }

        function test_theOtherClientsHaveTheirSnippets() {
            page("connection");
            const first = named("clientSnippet").text;
            const picker = named("clientPicker");
            picker.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => picker.popup.opened);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            tryVerify(() => named("clientSnippet").text !== first);
            compare(picker.displayText, "Claude Code");
            verify(named("clientPlace").text.length > 0);
        }
    }
}
