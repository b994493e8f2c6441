import QtQuick
import QtTest
import Velmora.Style

Item {
    width: 400
    height: 200

    Component {
        id: buttons

        Row {
            property alias first: firstButton
            property alias second: secondButton
            spacing: Theme.large

            Button {
                id: firstButton
                text: "Refresh"
                symbol: "arrow.clockwise"
            }
            Button {
                id: secondButton
                text: "Show in Terminal"
                symbol: "arrow.up.forward.app"
                display: Button.IconOnly
            }
        }
    }
    SignalSpy {
        id: clicks
        signalName: "clicked"
    }

    TestCase {
        name: "Button"
        when: windowShown

        property var row

        function init() {
            row = createTemporaryObject(buttons, parent);
            clicks.target = row.first;
            clicks.clear();
        }

        function test_theMouseClicksIt() {
            mouseClick(row.first);
            compare(clicks.count, 1);
        }

        function test_everyKeyThatMeansItClicksIt_data() {
            return [{
                    "tag": "space",
                    "key": Qt.Key_Space
                }, {
                    "tag": "return",
                    "key": Qt.Key_Return
                }, {
                    "tag": "enter",
                    "key": Qt.Key_Enter
                }];
        }
        function test_everyKeyThatMeansItClicksIt(data) {
            row.first.forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.key);
            compare(clicks.count, 1);
        }

        function test_theAccessibilityBusClicksIt() {
            row.first.Accessible.pressAction();
            compare(clicks.count, 1);
        }

        function test_aDisabledButtonIsNotClicked() {
            row.first.enabled = false;
            mouseClick(row.first);
            row.first.Accessible.pressAction();
            compare(clicks.count, 0);
        }

        function test_theKeyboardShowsWhereItIs() {
            row.first.forceActiveFocus(Qt.TabFocusReason);
            verify(row.first.visualFocus);
            keyClick(Qt.Key_Tab);
            verify(row.second.visualFocus);
            verify(!row.first.visualFocus);
        }

        function test_theMouseLeavesNoFocusRing() {
            mouseClick(row.first);
            verify(!row.first.visualFocus);
        }

        function test_aSymbolAloneSaysItsNameUnderTheMouse() {
            row.second.hoverEnabled = true;
            mouseMove(row.second, 5, 5);
            mouseMove(row.second, 8, 8);
            tryVerify(() => row.second.ToolTip.toolTip.opened);
            compare(row.second.ToolTip.toolTip.text, "Show in Terminal");
        }

        function test_aSymbolAloneKeepsItsName() {
            compare(row.second.Accessible.name, "Show in Terminal");
            verify(row.second.width < row.first.width);
            compare(row.second.width, row.second.height);
        }
    }
}
