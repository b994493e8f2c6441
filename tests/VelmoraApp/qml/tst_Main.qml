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

    function test_aNarrowWindowShowsTheSectionsSymbolsOnly() {
        open("full");
        const shown = () => Screens.texts(named("sidebar").parent).filter(text => text !== "");
        compare(window.width, 600);
        compare(shown(), ["About", "Quit"]);
        compare(named("sessionsSection").Accessible.name, "Sessions");
        compare(named("quit").Accessible.name, "Quit Velmora");
        window.width = 720;
        tryVerify(() => shown().includes("Sessions") && shown().includes("Quit Velmora"));
    }

    function test_aKeyShowsEachSection_data() {
        return ["dashboard", "sessions", "history", "settings", "help"].map((section, index) => ({
                        "tag": section,
                        "key": Qt.Key_1 + index
                    }));
    }
    function test_aKeyShowsEachSection(data) {
        open("full");
        show(data.tag === "help" ? "history" : "help");
        keyClick(data.key, Qt.ControlModifier);
        compare(bridge.viewModels.navigation.selectedSection, data.tag);
    }

    function test_keysFindRefreshAndOpenTheSettings() {
        open("full");
        keyClick(Qt.Key_F, Qt.ControlModifier);
        compare(bridge.viewModels.navigation.selectedSection, "history");
        tryVerify(() => named("searchHistory").activeFocus);
        keyClick(Qt.Key_Comma, Qt.ControlModifier);
        compare(bridge.viewModels.navigation.selectedSection, "settings");
        const before = bridge.terminalCalls().length;
        keyClick(Qt.Key_F5);
        tryVerify(() => bridge.terminalCalls().slice(before).includes("listSessions"));
    }

    function test_theHistoryOffersTheSettingThatKeepsCommands() {
        open("full");
        show("history");
        compare(named("notKept").text, "Your settings keep neither the text of commands nor output.");
        mouseClick(named("openPrivacySettings"));
        tryVerify(() => named("storeCommandBody") !== undefined);
        compare(bridge.viewModels.navigation.selectedSection, "settings");
    }

    function test_noKeyLeavesTheIntroduction() {
        window = createTemporaryObject(mainComponent, test, {
                "scenario": "firstRun"
            });
        bridge = window.bridge;
        verify(waitForRendering(window.contentItem));
        keyClick(Qt.Key_3, Qt.ControlModifier);
        keyClick(Qt.Key_Comma, Qt.ControlModifier);
        compare(bridge.viewModels.navigation.selectedSection, "dashboard");
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
        for (const notice of ["Apache License, Version 2.0", "Qt (LGPL-3.0)", "Phosphor Icons (MIT)"])
            verify(dialog.text.includes(notice));
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

    function isControl(item) {
        return item instanceof T.AbstractButton || item instanceof T.ComboBox || item instanceof T.TextField;
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
        compare(window.minimumWidth, 600);
        compare(window.minimumHeight, 480);
    }
}
