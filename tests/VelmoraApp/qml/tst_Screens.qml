import QtQuick
import QtQuick.Templates as T
import QtTest
import Velmora
import Velmora.Offline
import Velmora.Style
import "Screens.js" as Screens

// What holds on every screen: each window is opened once and shows them all.
TestCase {
    id: test
    name: "Screens"
    when: windowShown

    property var window
    readonly property var screens: ["dashboard", "sessions", "history", "settings", "settings 1", "settings 2", "help"]

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
        verify(waitForRendering(window.contentItem));
        tryVerify(() => window.bridge.ready);
    }
    // A section by its name, or "settings 1" for the second page of the settings.
    function show(screen) {
        const words = screen.split(" ");
        window.viewModels.navigation.selectedSection = words[0];
        window.viewModels.settings.page = words[1] ?? 0;
        tryVerify(() => named(words[0]) !== undefined);
        tryVerify(() => Screens.isLaidOut(test, named(words[0])));
        return named(words[0]);
    }
    function named(name) {
        return Screens.named(window.contentItem, name)[0];
    }
    function isControl(item) {
        return item instanceof T.AbstractButton || item instanceof T.ComboBox || item instanceof T.TextField;
    }
    function scenarios() {
        return ["full", "empty", "denied", "long"].map(scenario => ({
                        "tag": scenario
                    }));
    }

    function test_nothingIsCutOffInTheSmallestWindow_data() {
        return scenarios();
    }
    function test_nothingIsCutOffInTheSmallestWindow(data) {
        open(data.tag);
        for (const screen of screens) {
            const outside = Screens.all(show(screen), item => {
                    const left = item.mapToItem(null, 0, 0).x;
                    return item.objectName !== "" && (left < 0 || left + item.width > window.width);
                });
            compare(outside.map(item => item.objectName), [], screen);
        }
    }

    function test_everyControlHasAName_data() {
        return scenarios();
    }
    function test_everyControlHasAName(data) {
        open(data.tag);
        for (const screen of screens) {
            show(screen);
            const controls = Screens.all(window.contentItem, isControl);
            verify(controls.length > 7, screen + ": " + controls.length);
            compare(controls.filter(item => item.objectName === "" || item.Accessible.name === "").map(item => String(item)), [], screen);
        }
    }

    function test_theKeyboardReachesEveryControl() {
        open("full");
        for (const name of screens) {
            const screen = show(name);
            named("sidebar").forceActiveFocus(Qt.TabFocusReason);
            const reached = new Set();
            for (let step = 0; step < 60; ++step) {
                keyClick(Qt.Key_Tab);
                reached.add(window.activeFocusItem);
            }
            const missed = Screens.all(screen, isControl).filter(item => item.enabled && item.focusPolicy !== Qt.NoFocus && !reached.has(item));
            compare(missed.map(item => item.objectName), [], name);
            verify(reached.has(named("quit")), name);
        }
    }

    // What takes the keyboard by Tab says so, wherever it stands.
    function test_theKeyboardIsAlwaysSeen() {
        open("full");
        for (const screen of screens) {
            show(screen);
            named("sidebar").forceActiveFocus(Qt.TabFocusReason);
            for (let step = 0; step < 40; ++step) {
                keyClick(Qt.Key_Tab);
                const item = window.activeFocusItem;
                // A list shows it at its current row, a spin box around the number that has it.
                const place = item.objectName === "requests" ? item.currentItem : item.objectName === "" ? item.parent : item;
                verify(Screens.all(place, child => child instanceof FocusRing && child.shown).length > 0, screen + ": " + (item.objectName || String(item)));
            }
        }
    }
}
