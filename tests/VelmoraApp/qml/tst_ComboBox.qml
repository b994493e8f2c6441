import QtQuick
import QtTest
import Velmora.Style

Item {
    width: 400
    height: 300

    Component {
        id: picker

        ComboBox {
            objectName: "permission"
            Accessible.name: "Permission"
            model: ["managed", "allowed", "readOnly", "blocked"]
        }
    }
    SignalSpy {
        id: picks
        signalName: "activated"
    }

    TestCase {
        name: "ComboBox"
        when: windowShown

        property var control

        function init() {
            control = createTemporaryObject(picker, parent);
            picks.target = control;
            picks.clear();
        }
        function open() {
            mouseClick(control);
            tryVerify(() => control.popup.opened);
        }
        function choice(row) {
            return findChild(control.popup.contentItem, "permissionChoice" + row);
        }

        function test_theMousePicks() {
            open();
            mouseClick(choice(2));
            compare(control.currentIndex, 2);
            compare(control.displayText, "readOnly");
            compare(picks.count, 1);
            tryVerify(() => !control.popup.visible);
        }

        function test_aKeyOpensItAndReturnPicks_data() {
            return [{
                    "tag": "space",
                    "key": Qt.Key_Space
                }, {
                    "tag": "down",
                    "key": Qt.Key_Down
                }, {
                    "tag": "up",
                    "key": Qt.Key_Up
                }];
        }
        function test_aKeyOpensItAndReturnPicks(data) {
            control.forceActiveFocus(Qt.TabFocusReason);
            verify(control.visualFocus);
            keyClick(data.key);
            tryVerify(() => control.popup.opened);
            compare(control.currentIndex, 0);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            tryVerify(() => !control.popup.visible);
            compare(control.currentIndex, 1);
            compare(picks.count, 1);
        }

        function test_escapeLeavesItAsItWas() {
            open();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !control.popup.visible);
            compare(control.currentIndex, 0);
            compare(picks.count, 0);
        }

        function test_theAccessibilityBusOpensItAndPicks() {
            control.Accessible.pressAction();
            tryVerify(() => control.popup.opened);
            choice(3).Accessible.pressAction();
            compare(control.currentIndex, 3);
            compare(picks.count, 1);
            tryVerify(() => !control.popup.visible);
        }

        function test_theWheelDoesNotChangeIt() {
            mouseWheel(control, control.width / 2, control.height / 2, 0, -120);
            compare(control.currentIndex, 0);
        }
    }
}
