import QtQuick
import QtTest
import Velmora.Style

Item {
    width: 400
    height: 200

    Component {
        id: switchComponent

        Switch {
            text: "Store command bodies"
        }
    }
    Component {
        id: checkBoxComponent

        CheckBox {
            text: "Busy"
        }
    }
    SignalSpy {
        id: toggles
        signalName: "toggled"
    }

    TestCase {
        name: "Toggles"
        when: windowShown

        function make(data) {
            const control = createTemporaryObject(data.component, parent);
            toggles.target = control;
            toggles.clear();
            return control;
        }
        function kinds() {
            return [{
                    "tag": "switch",
                    "component": switchComponent
                }, {
                    "tag": "check box",
                    "component": checkBoxComponent
                }];
        }

        function test_theMouseTogglesIt_data() {
            return kinds();
        }
        function test_theMouseTogglesIt(data) {
            const control = make(data);
            mouseClick(control);
            verify(control.checked);
            compare(toggles.count, 1);
        }

        function test_everyKeyThatMeansItTogglesIt_data() {
            const rows = [];
            for (const kind of kinds()) {
                for (const key of [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter])
                    rows.push({
                            "tag": `${kind.tag} ${key}`,
                            "component": kind.component,
                            "key": key
                        });
            }
            return rows;
        }
        function test_everyKeyThatMeansItTogglesIt(data) {
            const control = make(data);
            control.forceActiveFocus(Qt.TabFocusReason);
            verify(control.visualFocus);
            keyClick(data.key);
            verify(control.checked);
            compare(toggles.count, 1);
        }

        function test_theAccessibilityBusTogglesItAndIsHeard_data() {
            return kinds();
        }
        function test_theAccessibilityBusTogglesItAndIsHeard(data) {
            const control = make(data);
            control.Accessible.toggleAction();
            verify(control.checked);
            control.Accessible.pressAction();
            verify(!control.checked);
            compare(toggles.count, 2);
            compare(control.Accessible.name, control.text);
            control.enabled = false;
            control.Accessible.toggleAction();
            verify(!control.checked);
        }
    }
}
