import QtQuick
import QtTest
import Velmora
import Velmora.Offline
import Velmora.Style
import "Screens.js" as Screens

// The whole window in each language: nothing is left in English, and everything has room.
TestCase {
    id: test
    name: "Languages"
    when: windowShown

    readonly property int english: 1
    readonly property int korean: 2
    // Names, and words that agents see as they are; see the documents. A text of nothing else needs no Korean.
    readonly property var names: new RegExp("delivered_to_terminal|VelmoraQmlTests|Velmora|tmux|Terminal(\\.app)?|MCP|OpenClaw|CLI|JSON|English|terminal_[a-z_]+|" + "available|notRunning|noWindows|unavailable|granted|denied|unknown|managed|allowed|readOnly|blocked|" + "received|processing|delivered|readComplete|rejected|failed|cancelled|ms|Coding agent|Review bot|" + "velmora: zsh|server: npm run dev|notes: vim README\\.md|deploy@machine: ssh|bash|zsh|fish|PTY|API|URL|PNG|TUI|macOS|AppleScript|System Events|stdio|velmora|Claude Code|Claude Desktop|" + "claude_desktop_config\\.json|(data\\.session\\.)?sessionId|maxCharacters|(up|down|left|right)Arrow|forwardDelete|pageUp|pageDown|/\\S+", "g")
    // What a Korean sentence may quote, and what must not stand by itself.
    readonly property var quoted: new RegExp("Dashboard|Active|Selective|Settings, Developer, Edit Config|kind|window|attach|source|visible|history|" + "pane|Tab|Return|Escape|return|escape|tab|delete|home|end|\\.app", "g")
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
            visible: true
        }
    }

    function open(scenario, width, height) {
        window = createTemporaryObject(mainComponent, test, {
                "scenario": scenario,
                "width": width,
                "height": height
            });
        bridge = window.bridge;
        verify(waitForRendering(window.contentItem));
        if (!["firstRun", "other"].includes(scenario))  // where nothing is asked yet
            tryVerify(() => bridge.ready);
    }
    function speak(language) {
        bridge.viewModels.settings.general.languageIndex = language;
    }
    function show(screen) {
        const words = screen.split(" ");
        bridge.viewModels.navigation.selectedSection = words[0];
        bridge.viewModels.settings.page = words[1] ?? 0;
        tryVerify(() => named(words[0]) !== undefined);
        waitForRendering(window.contentItem);
    }
    function named(name) {
        return Screens.named(window.contentItem, name)[0];
    }
    function screens() {
        return ["dashboard", "sessions", "history", "settings", "settings 1", "settings 2", "help"];
    }
    // What is typed, copied or made by the user is nobody's to translate.
    function isUsersOwn(item) {
        const own = ["target", "command", "output", "sessionTitle", "sessionDetail", "lastCommand", "testAnswer", "clientName"];
        for (let place = item; place; place = place.parent) {
            if (own.includes(place.objectName) || /^session[0-9A-F-]{36}$/.test(place.objectName) && place === item || place instanceof SettingsCodeBlock || (place as ComboBox)?.objectName === "clientPicker")
                return true;
        }
        return false;
    }
    function flat(lists) {
        return [].concat(...lists);
    }
    function leftInEnglish(said) {
        const rest = said.replace(names, "");
        return /[A-Za-z]{2,}/.test(/[가-힣]/.test(rest) ? rest.replace(quoted, "") : rest);
    }
    function englishOn(screen) {
        const items = Screens.all(window.contentItem, item => !isUsersOwn(item));
        const said = items.map(item => [item.text, item.placeholderText, item.Accessible.name, item.Accessible.description, item.ToolTip?.text]);
        return flat(said).filter(text => typeof text === "string" && leftInEnglish(text)).map(text => screen + ": " + text);
    }
    function cutOn(screen) {
        const captions = Screens.all(window.contentItem, item => item.truncated === true && !isUsersOwn(item));
        return captions.map(item => screen + ": " + item.text);
    }

    function test_koreanLeavesNothingInEnglish_data() {
        return ["full", "empty", "paused", "denied", "deaf", "kept", "macOS"].map(scenario => ({
                        "tag": scenario
                    }));
    }
    function test_koreanLeavesNothingInEnglish(data) {
        open(data.tag, 960, 640);
        speak(korean);
        for (const screen of screens()) {
            show(screen);
            compare(englishOn(screen), []);
        }
    }

    function test_whatIsSaidOfAnotherBridgeIsKorean() {
        open("other", 720, 480);
        speak(korean);
        tryVerify(() => /[가-힣]/.test(named("otherBridgeTitle").text));
        compare(englishOn("another bridge"), []);
        mouseClick(named("takeOver"));
        tryVerify(() => named("otherBridgeProblem") !== undefined);
        compare(englishOn("another bridge that stays"), []);
    }

    function test_theIntroductionSpeaksKorean() {
        open("firstRun", 720, 480);
        speak(korean);
        for (let step = 0; step < 4; ++step) {
            compare(bridge.viewModels.onboarding.stepIndex, step);
            compare(englishOn("step " + step), []);
            if (step < 3) {
                bridge.viewModels.onboarding.next();
                verify(waitForRendering(window.contentItem));
            }
        }
    }

    function test_nothingIsCut_data() {
        const rows = [];
        for (const size of [[720, 480], [1600, 1000]])
            for (const language of [english, korean])
                for (const dark of [false, true])
                    rows.push({
                            "tag": size.join("×") + (language === korean ? " Korean" : " English") + (dark ? " dark" : " light"),
                            "size": size,
                            "language": language,
                            "dark": dark
                        });
        return rows;
    }
    function test_nothingIsCut(data) {
        open("full", data.size[0], data.size[1]);
        const before = Theme.dark;
        Theme.dark = data.dark;
        speak(data.language);
        for (const screen of screens()) {
            show(screen);
            compare(cutOn(screen), []);
        }
        Theme.dark = before;
    }

    function test_anotherLanguageHoldsAtOnceAndForAllThatIsChosen() {
        open("full", 960, 640);
        bridge.viewModels.history.toolIndex = 3;
        show("history");
        speak(korean);
        compare(named("toolPicker").currentIndex, 3);
        compare(named("searchHistory").placeholderText, "기록 검색");
        const items = Screens.all(named("sidebar"), item => item.objectName.endsWith("Section"));
        compare(items.map(item => item.text), ["대시보드", "세션", "기록", "설정", "도움말"]);
        show("settings");
        compare(named("languagePicker").currentIndex, korean);
        compare(named("languagePicker").displayText, "한국어");
        compare(bridge.viewModels.help.languageIndex, 1);
        speak(english);
        compare(named("generalTab").text, "General");
        compare(bridge.userDefault("language"), "en");
        speak(0);
        compare(bridge.userDefault("language"), "system");
        compare(named("languagePicker").displayText, "As the system");
        verify(!named("languagePicker").contentItem.truncated);
    }

    function test_numbersAreWrittenAsTheLanguageDoes() {
        open("full", 960, 640);
        speak(korean);
        show("settings 1");
        compare(named("maximumRecordCountStepper").displayText, "10,000개");
    }
}
