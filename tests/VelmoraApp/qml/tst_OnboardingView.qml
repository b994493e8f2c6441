import QtQuick
import QtTest
import Velmora
import Velmora.Offline
import Velmora.Style
import "Screens.js" as Screens

// The introduction in the window that it is shown in.
TestCase {
    id: test
    name: "OnboardingView"
    when: windowShown

    property var bridge
    property var window
    property var onboarding

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
        onboarding = bridge.viewModels.onboarding;
        window.requestActivate();
        tryVerify(() => window.active);
        verify(waitForRendering(window.contentItem));
    }
    function part(name) {
        return Screens.named(window.contentItem, name)[0];
    }
    function step() {
        return ["Velmora Bridge", "Terminal automation", "Session policy", "Local MCP connection"].indexOf(part("onboardingTitle").text);
    }
    function goTo(index) {
        while (onboarding.stepIndex < index)
            onboarding.next();
        compare(step(), index);
    }
    function finished(policy) {
        verify(!onboarding.needed);
        compare(part("onboarding"), undefined);
        compare(bridge.userDefault("onboardingCompleted"), "true");
        compare(bridge.userDefault("sessionPolicy"), policy);
        tryVerify(() => bridge.ready);
        compare(bridge.sessionPolicy(), policy);
        return true;
    }

    function test_itStandsInPlaceOfTheContent() {
        open("firstRunMacOS");
        verify(part("onboarding"));
        compare(part("sidebar"), undefined);
        compare(part("dashboard"), undefined);
        compare(step(), 0);
        verify(!bridge.ready);
    }

    function test_withoutAFirstRunItIsNotShown() {
        open("full");
        compare(part("onboarding"), undefined);
        verify(part("sidebar"));
    }

    function test_theMouseLeadsThroughTheSteps() {
        open("firstRunMacOS");
        for (const index of [0, 1, 2, 3]) {
            compare(step(), index);
            compare(part("onboardingBack").enabled, index > 0);
            compare(part("onboardingForward").text, index < 3 ? "Continue" : "Finish");
            compare(part("onboardingText") === undefined, index === 2);
            compare(part("policyChoice0") === undefined, index !== 2);
            compare(part("onboardingProgress").Accessible.name, `Step ${index + 1} of 4`);
            if (index === 2) {
                tryVerify(() => part("policyChoice1").y > 0);
                mouseClick(part("policyChoice1"));
            }
            mouseClick(part("onboardingForward"));
        }
        verify(finished("selective"));
        verify(part("sidebar").activeFocus);
        compare(bridge.viewModels.navigation.selectedSection, "dashboard");
    }

    function test_returnGoesOn() {
        open("firstRunMacOS");
        keyClick(Qt.Key_Return);
        compare(step(), 1);
        keyClick(Qt.Key_Enter);
        compare(step(), 2);
        keyClick(Qt.Key_Return);
        compare(step(), 3);
        keyClick(Qt.Key_Return);
        verify(finished("safe"));
    }

    function test_aKeyThatIsHeldGoesOneStep() {
        open("firstRunMacOS");
        Keyboard.hold(window, Qt.Key_Return);
        compare(step(), 1);
        part("onboardingForward").forceActiveFocus(Qt.TabFocusReason);
        Keyboard.hold(window, Qt.Key_Return);
        compare(step(), 2);
    }

    function test_theArrowsChooseThePolicy() {
        open("firstRunMacOS");
        goTo(2);
        verify(part("policyChoice0").activeFocus);
        verify(part("policyChoice0").checked);
        keyClick(Qt.Key_Down);
        verify(part("policyChoice1").activeFocus);
        verify(part("policyChoice1").checked);
        verify(!part("policyChoice0").checked);
        keyClick(Qt.Key_Down);
        compare(onboarding.policyIndex, 1);
        keyClick(Qt.Key_Up);
        compare(onboarding.policyIndex, 0);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(step(), 3);
        keyClick(Qt.Key_Return);
        verify(finished("selective"));
    }

    function test_eachPolicySaysWhatItMeans() {
        open("firstRunMacOS");
        goTo(2);
        compare(Screens.named(part("onboardingPage"), "choiceCaption").map(label => label.text), ["Agents may type into every idle session of yours.", "Agents may read your sessions, and type only into windows that they opened."]);
        compare(part("policyChoice1").Accessible.description, "Agents may read your sessions, and type only into windows that they opened.");
    }

    function test_theSpaceBarAndTheAccessibilityBusChooseThePolicy() {
        open("firstRunMacOS");
        goTo(2);
        part("policyChoice1").forceActiveFocus(Qt.TabFocusReason);
        compare(onboarding.policyIndex, 0);
        keyClick(Qt.Key_Space);
        compare(onboarding.policyIndex, 1);
        part("policyChoice0").Accessible.pressAction();
        compare(onboarding.policyIndex, 0);
        verify(part("policyChoice0").checked);
        verify(!part("policyChoice1").checked);
        part("policyChoice0").Accessible.toggleAction();
        compare(onboarding.policyIndex, 0);
        verify(part("policyChoice0").checked);
    }

    function test_escapeGoesBackAStepAndLosesNothing() {
        open("firstRunMacOS");
        keyClick(Qt.Key_Escape);
        compare(step(), 0);
        verify(window.visible);
        goTo(2);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(step(), 3);
        keyClick(Qt.Key_Escape);
        compare(step(), 2);
        verify(part("policyChoice1").checked);
        keyClick(Qt.Key_Escape);
        keyClick(Qt.Key_Escape);
        keyClick(Qt.Key_Escape);
        compare(step(), 0);
        compare(onboarding.policyIndex, 1);
        verify(window.visible);
        compare(bridge.userDefault("sessionPolicy"), "");
    }

    function test_returnOnTheWayBackGoesBack() {
        open("firstRunMacOS");
        goTo(1);
        part("onboardingBack").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        compare(step(), 0);
        keyClick(Qt.Key_Return);
        compare(step(), 1);
    }

    function test_theKeyboardReachesEveryControl() {
        open("firstRunMacOS");
        goTo(2);
        const reached = new Set();
        for (let count = 0; count < 8; ++count) {
            reached.add(window.activeFocusItem.objectName);
            keyClick(Qt.Key_Tab);
        }
        for (const name of ["policyChoice0", "policyChoice1", "onboardingBack", "onboardingForward"])
            verify(reached.has(name), name);
        compare(onboarding.policyIndex, 0);
    }

    function test_everyStepIsSpoken() {
        open("firstRunMacOS");
        for (const index of [0, 1, 2, 3]) {
            goTo(index);
            const page = part("onboardingPage");
            compare(page.Accessible.name, part("onboardingTitle").text);
            verify(index === 2 || page.activeFocus);
            compare(page.Accessible.description, index === 2 ? "" : part("onboardingText").text);
            const controls = Screens.all(window.contentItem, item => item.clicked !== undefined);
            verify(controls.length >= 2);
            compare(controls.filter(item => item.Accessible.name === "").map(item => item.objectName), []);
        }
    }

    function test_theChoiceShowsTheSessionsThatItIsAbout() {
        open("firstRun");
        onboarding.next();
        onboarding.next();
        tryVerify(() => part("foundSessions") !== undefined);
        compare(part("foundSessions").text, "Open now: velmora: zsh, server: npm run dev, notes: vim README.md, 2 more");
        verify(part("policyConsequence").text.startsWith("Agents will be able to type into all of these"));
        keyClick(Qt.Key_Down);
        compare(part("policyConsequence").text, "Agents will type into none of these unless you allow it.");
    }

    function test_theLastStepHasTheConfigurationOfEachClientToCopy() {
        open("firstRunMacOS");
        goTo(3);
        const picker = part("clientPicker");
        verify(picker.count > 5);
        for (let row = 0; row < picker.count; ++row) {
            onboarding.connection.clientIndex = row;
            verify(part("clientSnippet").text.includes("/velmora"), picker.currentText);
            part("copyClientSnippet").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            compare(bridge.pasteboard(), part("clientSnippet").text);
        }
    }

    function test_theConnectionIsTestedByTheHelperItself() {
        open("firstRunMacOS");
        goTo(3);
        compare(part("testResult"), undefined);
        part("testConnection").forceActiveFocus(Qt.TabFocusReason);
        const bottom = () => part("testConnection").mapToItem(part("onboardingPage"), 0, part("testConnection").height).y;
        tryVerify(() => bottom() <= part("onboardingPage").height, 5000, "it is scrolled into sight");
        keyClick(Qt.Key_Space);
        tryVerify(() => part("testResult") !== undefined);
        verify(part("testResult").text.includes("/Contents/Helpers/velmora could not be started."));
        verify(part("testConnection").enabled);
    }

    function test_closingTheWindowLeavesItDue() {
        open("firstRunMacOS");
        goTo(3);
        window.close();
        const dialog = findChild(window, "closeDialog");
        tryVerify(() => dialog.opened);
        mouseClick(findChild(dialog.contentItem, "dialogConfirm"));
        tryVerify(() => !dialog.visible);
        verify(onboarding.needed);
        compare(bridge.userDefault("onboardingCompleted"), "false");
        compare(bridge.userDefault("sessionPolicy"), "");
    }

    function test_nothingIsCutOffInTheSmallestWindow_data() {
        return [{
                "tag": "firstRun"
            }, {
                "tag": "firstRunMacOS"
            }];
    }
    function test_nothingIsCutOffInTheSmallestWindow(data) {
        open(data.tag);
        for (let index = 0; index < onboarding.stepCount; ++index) {
            tryVerify(() => part("onboardingPage").height > window.height / 2);
            const outside = Screens.all(part("onboarding"), item => {
                    const corner = item.mapToItem(null, 0, 0);
                    const scrolls = index === 3 && item.objectName !== "onboardingForward";
                    if (scrolls && corner.y + item.height > window.height)
                        return corner.x < 0 || corner.x + item.width > window.width;
                    return corner.x < 0 || corner.y < 0 || corner.x + item.width > window.width || corner.y + item.height > window.height || item.truncated === true;
                });
            compare(outside.map(item => item.objectName), []);
            const page = part("onboardingPage");
            verify(page.childrenRect.height <= page.height);
            verify(page.mapToItem(null, 0, page.height).y <= part("onboardingForward").mapToItem(null, 0, 0).y);
            onboarding.next();
        }
    }
}
