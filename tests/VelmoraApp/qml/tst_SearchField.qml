import QtQuick
import QtTest
import Velmora.Style

Item {
    width: 400
    height: 200

    Component {
        id: fieldComponent

        SearchField {
            placeholderText: "Search history"
        }
    }
    SignalSpy {
        id: edits
        signalName: "textChanged"
    }

    TestCase {
        name: "SearchField"
        when: windowShown

        property var field

        function init() {
            field = createTemporaryObject(fieldComponent, parent);
            edits.target = field;
            mouseClick(field);
            verify(field.activeFocus);
            for (const letter of "ls")
                keyClick(letter);
            compare(field.text, "ls");
            edits.clear();
        }

        function test_escapeEmptiesIt() {
            keyClick(Qt.Key_Escape);
            compare(field.text, "");
            compare(edits.count, 1);
        }

        function test_itsButtonEmptiesIt() {
            const button = findChild(field, "clearSearch");
            verify(button.visible);
            mouseClick(button);
            compare(field.text, "");
            compare(edits.count, 1);
            verify(!button.visible);
            verify(field.activeFocus);
        }

        function test_theAccessibilityBusEmptiesIt() {
            findChild(field, "clearSearch").Accessible.pressAction();
            compare(field.text, "");
            compare(edits.count, 1);
        }

        function test_itIsNamedByWhatItSearches() {
            compare(field.Accessible.name, "Search history");
        }
    }
}
