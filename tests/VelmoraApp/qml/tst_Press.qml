import QtQuick
import QtQuick.Window
import QtTest
import Velmora.Offline
import Velmora.Style

// Every control that can be pressed, in every way there is.
Item {
    id: root
    width: 400
    height: 200

    Component {
        id: button

        Button {
            text: "Refresh"
        }
    }
    Component {
        id: sidebarButton

        SidebarButton {
            text: "Quit Velmora"
        }
    }
    Component {
        id: sidebarItem

        SidebarItem {
            text: "Dashboard"
        }
    }
    Component {
        id: switchControl

        Switch {
            text: "Store command bodies"
        }
    }
    Component {
        id: checkBox

        CheckBox {
            text: "Busy"
        }
    }
    Component {
        id: radioButton

        RadioButton {
            text: "Safe"
        }
    }
    Component {
        id: tabButton

        TabButton {
            text: "Privacy"
        }
    }
    Component {
        id: comboBox

        ComboBox {
            readonly property bool opened: popup.visible

            Accessible.name: "Permission"
            model: ["managed", "allowed"]
        }
    }
    Component {
        id: surroundings

        FocusScope {
            property int returns: 0

            focus: true
            Keys.onReturnPressed: returns += 1
        }
    }
    SignalSpy {
        id: acts
    }

    TestCase {
        name: "Press"
        when: windowShown

        // What tells that a control acted, and which keys press it besides Space.
        function controls() {
            return [{
                    "tag": "button",
                    "component": button,
                    "told": "clicked",
                    "returnKeys": true
                }, {
                    "tag": "sidebar button",
                    "component": sidebarButton,
                    "told": "clicked",
                    "returnKeys": true
                }, {
                    "tag": "sidebar item",
                    "component": sidebarItem,
                    "told": "clicked",
                    "returnKeys": true
                }, {
                    "tag": "switch",
                    "component": switchControl,
                    "told": "toggled",
                    "returnKeys": true
                }, {
                    "tag": "check box",
                    "component": checkBox,
                    "told": "toggled",
                    "returnKeys": true
                }, {
                    "tag": "radio button",
                    "component": radioButton,
                    "told": "toggled",
                    "returnKeys": false
                }, {
                    "tag": "tab button",
                    "component": tabButton,
                    "told": "checkedChanged",
                    "returnKeys": true
                }, {
                    "tag": "combo box",
                    "component": comboBox,
                    "told": "openedChanged",
                    "returnKeys": false
                }];
        }
        function keyed() {
            const rows = [];
            for (const control of controls()) {
                for (const key of control.returnKeys ? [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter] : [Qt.Key_Space])
                    rows.push(Object.assign({}, control, {
                                "tag": `${control.tag} ${key}`,
                                "key": key
                            }));
            }
            return rows;
        }
        function make(data) {
            const control = createTemporaryObject(data.component, root);
            acts.target = control;
            acts.signalName = data.told;
            acts.clear();
            return control;
        }
        function focused(data) {
            const control = make(data);
            control.forceActiveFocus(Qt.TabFocusReason);
            verify(control.visualFocus);
            return control;
        }

        function test_theMousePressesIt_data() {
            return controls();
        }
        function test_theMousePressesIt(data) {
            mouseClick(make(data));
            compare(acts.count, 1);
        }

        function test_aKeyPressesIt_data() {
            return keyed();
        }
        function test_aKeyPressesIt(data) {
            focused(data);
            keyClick(data.key);
            compare(acts.count, 1);
        }

        function test_aKeyThatIsHeldActsOnce_data() {
            return keyed();
        }
        function test_aKeyThatIsHeldActsOnce(data) {
            const control = focused(data);
            Keyboard.hold(control.Window.window, data.key);
            compare(acts.count, 1);
        }

        function test_aRadioButtonLeavesReturnToWhatItBelongsTo() {
            const around = createTemporaryObject(surroundings, root);
            radioButton.createObject(around).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            compare(around.returns, 1);
        }

        function test_assistiveTechnologyPressesItAndIsHeard_data() {
            return controls();
        }
        function test_assistiveTechnologyPressesItAndIsHeard(data) {
            make(data).Accessible.pressAction();
            compare(acts.count, 1);
        }

        function test_assistiveTechnologyTogglesWhatToggles_data() {
            return controls().filter(control => control.told === "toggled");
        }
        function test_assistiveTechnologyTogglesWhatToggles(data) {
            const control = make(data);
            control.Accessible.toggleAction();
            verify(control.checked);
            compare(acts.count, 1);
        }

        function test_aDisabledOneIsNotPressed_data() {
            return controls();
        }
        function test_aDisabledOneIsNotPressed(data) {
            const control = make(data);
            control.enabled = false;
            mouseClick(control);
            control.Accessible.pressAction();
            control.Accessible.toggleAction();
            compare(acts.count, 0);
        }

        function test_aChosenRadioButtonStaysChosen() {
            const control = make(controls().find(row => row.tag === "radio button"));
            control.Accessible.pressAction();
            control.Accessible.pressAction();
            verify(control.checked);
            compare(acts.count, 1);
        }

        function test_aToggleIsTurnedBack_data() {
            return controls().filter(control => ["switch", "check box"].includes(control.tag));
        }
        function test_aToggleIsTurnedBack(data) {
            const control = make(data);
            control.Accessible.pressAction();
            control.Accessible.pressAction();
            verify(!control.checked);
            compare(acts.count, 2);
        }
    }
}
