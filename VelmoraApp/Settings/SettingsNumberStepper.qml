import QtQuick
import QtQuick.Layouts
import Velmora.Style

// A number within bounds, changed by steps.
RowLayout {
    id: row

    required property string title
    // Turns the number into its text, with the unit.
    required property var valueText
    required property int value
    // {minimum, maximum}, both inclusive.
    required property var range
    property int step: 1

    signal picked(int value)

    spacing: Theme.small

    Label {
        Layout.fillWidth: true
        text: row.title
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    SpinBox {
        id: spinBox
        objectName: row.objectName + "Stepper"
        Layout.minimumWidth: Theme.widePickerWidth
        from: row.range.minimum
        to: row.range.maximum
        stepSize: row.step
        value: row.value
        textFromValue: value => row.valueText(value)
        Accessible.name: row.title
        Accessible.description: displayText
        onValueModified: row.picked(value)
    }
}
