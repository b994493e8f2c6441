import QtQuick

// What presses a control besides the mouse: its keys and assistive technology. A key that is held down acts once. The
// control forwards its keys here (Keys.forwardTo); Qt handles Space by itself, but emits nothing when
// assistive technology presses.
Item {
    id: press

    required property Item control
    // False leaves Return to the control, or to what it belongs to.
    property bool takesReturn: true

    signal pressed

    function act() {
        if (control.enabled)
            pressed();
    }

    Keys.onPressed: event => {
        const isReturn = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        event.accepted = isReturn ? takesReturn : event.isAutoRepeat && event.key === Qt.Key_Space;
        if (isReturn && takesReturn && !event.isAutoRepeat)
            act();
    }
    Keys.onReleased: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space

    Connections {
        target: press.control.Accessible

        function onPressAction() {
            press.act();
        }
        function onToggleAction() {
            press.act();
        }
    }
}
