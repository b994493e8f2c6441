import QtQuick
import QtQuick.Templates as T
import QtTest
import Velmora
import Velmora.Offline
import Velmora.Style
import "Screens.js" as Screens

TestCase {
    id: test
    name: "Main"
    when: windowShown

    property var bridge
    property var window
    readonly property var sectionNames: ["dashboard", "sessions", "history", "settings", "settings 1", "settings 2", "help"]

    Component {
        id: mainComponent

        Main {
            id: main

            required property string scenario
            readonly property OfflineBridge bridge: OfflineBridge {
                scenario: main.scenario
            }

            viewModels: bridge.viewModels
            width: minimumWidth
            height: minimumHeight
            visible: true
        }
    }

    function open(scenario) {
        window = createTemporaryObject(mainComponent, test, {
                "scenario": scenario
            });
        bridge = window.bridge;
        verify(waitForRendering(window.contentItem));
        tryVerify(() => bridge.ready);
    }
    // A section by its name, or "settings 1" for the second page of the settings.
    function show(screen) {
        const words = screen.split(" ");
        bridge.viewModels.navigation.selectedSection = words[0];
        bridge.viewModels.settings.page = words[1] ?? 0;
        tryVerify(() => named(words[0]) !== undefined);
        return named(words[0]);
    }
    function named(name) {
        return Screens.named(window.contentItem, name)[0];
    }

    function test_theSidebarListsFiveSections() {
        open("full");
        const items = Screens.all(named("sidebar"), item => item.objectName.endsWith("Section"));
        compare(items.map(item => item.text), ["Dashboard", "Sessions", "History", "Settings", "Help"]);
        compare(items.map(item => item.symbol), ["gauge", "terminal", "clock.arrow.circlepath", "gearshape", "questionmark.circle"]);
    }

    function test_aClickShowsItsSection_data() {
        return [{
                "tag": "sessions",
                "title": "Sessions"
            }, {
                "tag": "history",
                "title": "Request History"
            }, {
                "tag": "help",
                "title": "Help"
            }, {
                "tag": "dashboard",
                "title": "Dashboard"
            }];
    }
    function test_aClickShowsItsSection(data) {
        open("full");
        show(data.tag === "dashboard" ? "history" : "dashboard");
        mouseClick(named(data.tag + "Section"));
        tryVerify(() => named("screenTitle").text === data.title);
        verify(named(data.tag + "Section").highlighted);
    }

    function test_theArrowKeysWalkTheSections() {
        open("full");
        named("sidebar").forceActiveFocus(Qt.TabFocusReason);
        verify(named("dashboardSection").focusShown);
        keyClick(Qt.Key_Down);
        compare(bridge.viewModels.navigation.selectedSection, "sessions");
        tryVerify(() => named("sessionsSection").focusShown);
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_Up);
        compare(bridge.viewModels.navigation.selectedSection, "dashboard");
    }

    function test_theAccessibilityBusSelectsASection() {
        open("full");
        named("historySection").Accessible.pressAction();
        compare(bridge.viewModels.navigation.selectedSection, "history");
    }

    function test_aboutNamesTheApplicationAndItsVersion() {
        open("full");
        mouseClick(named("about"));
        const dialog = findChild(window, "aboutDialog");
        tryVerify(() => dialog.opened);
        compare(dialog.title, "About Velmora");
        verify(dialog.text.startsWith("Velmora "));
        keyClick(Qt.Key_Escape);
        tryVerify(() => !dialog.visible);
    }

    function test_closingWithoutATrayIsExplainedFirst() {
        open("full");
        window.close();
        const dialog = findChild(window, "closeDialog");
        tryVerify(() => dialog.opened);
        verify(window.visible);
        verify(dialog.text.length > 0);
        mouseClick(findChild(dialog.contentItem, "dialogCancel"));
        tryVerify(() => !dialog.visible);
        verify(window.visible);
    }

    function openBesideAnother() {
        window = createTemporaryObject(mainComponent, test, {
                "scenario": "other"
            });
        bridge = window.bridge;
        verify(waitForRendering(window.contentItem));
    }

    function test_besideAnotherBridgeThereIsOnlyThatToSay() {
        openBesideAnother();
        verify(/^Another bridge of yours is serving: \S+, process \d+, since .*\d\d:\d\d$/.test(named("otherBridgeTitle").text), named("otherBridgeTitle").text);
        for (const name of ["sidebar", "dashboard", "togglePause", "permissionPicker", "onboarding"])
            compare(named(name), undefined);
        compare(Screens.all(window.contentItem, isControl).map(control => control.text), ["Quit", "End it and take over"]);
        verify(named("quitInstead").activeFocus || window.activeFocusItem === null);
        compare(bridge.terminalCalls(), ["listSessions"], "that of the scenario itself");
    }

    function test_anotherBridgeThatStaysIsStillShown() {
        openBesideAnother();
        compare(named("otherBridgeProblem"), undefined);
        mouseClick(named("takeOver"));  // this very process, which is not one to end
        tryVerify(() => named("otherBridgeProblem") !== undefined);
        compare(named("takeOver").text, "End it and take over");
        verify(named("takeOver").enabled);
    }

    function test_theWindowIsNeverTooSmall() {
        open("full");
        compare(window.minimumWidth, 720);
        compare(window.minimumHeight, 480);
    }

    function screens() {
        const rows = [];
        for (const scenario of ["full", "empty", "denied", "long"]) {
            for (const section of sectionNames)
                rows.push({
                        "tag": `${section}, ${scenario}`,
                        "section": section,
                        "scenario": scenario
                    });
        }
        return rows;
    }

    function test_nothingIsCutOffInTheSmallestWindow_data() {
        return screens();
    }
    function test_nothingIsCutOffInTheSmallestWindow(data) {
        open(data.scenario);
        const screen = show(data.section);
        const outside = Screens.all(screen, item => {
                const left = item.mapToItem(null, 0, 0).x;
                return item.objectName !== "" && (left < 0 || left + item.width > window.width);
            });
        compare(outside.map(item => item.objectName), []);
    }

    function isControl(item) {
        return item instanceof T.AbstractButton || item instanceof T.ComboBox || item instanceof T.TextField;
    }

    function test_everyControlHasAName_data() {
        return screens();
    }
    function test_everyControlHasAName(data) {
        open(data.scenario);
        show(data.section);
        const controls = Screens.all(window.contentItem, isControl);
        verify(controls.length > 7, controls.length);
        compare(controls.filter(item => item.objectName === "" || item.Accessible.name === "").map(item => String(item)), []);
    }

    function test_theKeyboardReachesEveryControl_data() {
        return sectionNames.map(section => ({
                        "tag": section
                    }));
    }
    function test_theKeyboardReachesEveryControl(data) {
        open("full");
        const screen = show(data.tag);
        named("sidebar").forceActiveFocus(Qt.TabFocusReason);
        const reached = new Set();
        for (let step = 0; step < 60; ++step) {
            keyClick(Qt.Key_Tab);
            reached.add(window.activeFocusItem);
        }
        const missed = Screens.all(screen, isControl).filter(item => item.enabled && item.focusPolicy !== Qt.NoFocus && !reached.has(item));
        compare(missed.map(item => item.objectName), []);
        verify(reached.has(named("quit")));
    }
}
