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

    TestCase {
        name: "Button"
        when: windowShown

        property var row

        function init() {
            row = createTemporaryObject(buttons, parent);
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
