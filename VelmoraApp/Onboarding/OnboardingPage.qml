pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Style

// One step: what it is about, and what there is to say or to choose.
Item {
    id: page

    required property OnboardingViewModel viewModel

    objectName: "onboardingPage"
    Accessible.role: Accessible.Pane
    Accessible.name: viewModel.title
    Accessible.description: viewModel.text
    Accessible.focusable: true
    Keys.onUpPressed: choose(viewModel.policyIndex - 1)
    Keys.onDownPressed: choose(viewModel.policyIndex + 1)
    Component.onCompleted: takeKeyboard()

    function takeKeyboard() {
        if (viewModel.choosesPolicy)
            choices.itemAt(viewModel.policyIndex).forceActiveFocus(Qt.TabFocusReason);
        else
            forceActiveFocus(Qt.OtherFocusReason);
    }
    function choose(index: int) {
        viewModel.policyIndex = index;
        takeKeyboard();
    }

    Column {
        anchors.centerIn: parent
        width: Math.min(Theme.measure, parent.width)
        spacing: Theme.large

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: page.viewModel.symbol
            size: Theme.symbolLarge
            color: Theme.accent
        }
        Label {
            objectName: "onboardingTitle"
            width: parent.width
            text: page.viewModel.title
            font: Theme.title
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Label {
            objectName: "onboardingText"
            width: parent.width
            visible: text.length > 0
            text: page.viewModel.text
            color: Theme.textSecondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Column {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: page.viewModel.choosesPolicy
            spacing: Theme.small

            Repeater {
                id: choices
                model: page.viewModel.choosesPolicy ? page.viewModel.policies : []

                RadioButton {
                    required property int index
                    required property string modelData

                    objectName: "policyChoice" + index
                    text: modelData
                    checked: page.viewModel.policyIndex === index
                    onToggled: page.viewModel.policyIndex = index
                }
            }
        }
    }
}
