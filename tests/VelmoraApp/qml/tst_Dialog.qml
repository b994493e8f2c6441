import QtQuick
import QtTest
import Velmora.Style

Item {
    id: root
    width: 720
    height: 480

    Component {
        id: dialogComponent

        Dialog {
            title: "Delete Velmora history?"
            text: "This does not change Terminal scrollback or shell history."
            confirmText: "Delete History"
            destructive: true
        }
    }
    SignalSpy {
        id: accepted
        signalName: "accepted"
    }
    SignalSpy {
        id: rejected
        signalName: "rejected"
    }

    TestCase {
        name: "Dialog"
        when: windowShown

        property var dialog

        function init() {
            dialog = createTemporaryObject(dialogComponent, root);
            accepted.target = dialog;
            rejected.target = dialog;
            accepted.clear();
            rejected.clear();
            dialog.open();
            tryVerify(() => dialog.opened);
        }
        function part(name) {
            return findChild(dialog.contentItem, name);
        }

        function test_whatCannotBeUndoneStartsOnTheWayBack() {
            verify(part("dialogCancel").visualFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => !dialog.visible);
            compare(rejected.count, 1);
            compare(accepted.count, 0);
        }

        function test_escapeIsTheWayBack() {
            keyClick(Qt.Key_Escape);
            tryVerify(() => !dialog.visible);
            compare(rejected.count, 1);
        }

        function test_theMouseConfirms() {
            mouseClick(part("dialogConfirm"));
            tryVerify(() => !dialog.visible);
            compare(accepted.count, 1);
        }

        function test_theKeyboardStaysWithinIt() {
            keyClick(Qt.Key_Tab);
            verify(part("dialogConfirm").visualFocus);
            keyClick(Qt.Key_Tab);
            verify(part("dialogCancel").visualFocus);
        }

        function test_itLiesInTheMiddle() {
            const middle = dialog.contentItem.mapToItem(null, dialog.contentItem.width / 2, 0).x;
            fuzzyCompare(middle, root.Window.width / 2, 1);
        }
    }
}
