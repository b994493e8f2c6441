pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Style

// One step: its title, and its text or choice.
Item {
    id: page

    required property OnboardingViewModel viewModel

    objectName: "onboardingPage"
    Accessible.role: Accessible.Pane
    Accessible.name: viewModel.title
    Accessible.description: viewModel.text
    Accessible.focusable: true
    Component.onCompleted: takeKeyboard()

    function takeKeyboard() {
        if (viewModel.choosesPolicy)
            choices.takeKeyboard();
        else
            forceActiveFocus(Qt.OtherFocusReason);
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
        SessionPolicyChoices {
            id: choices
            lineWidth: parent.width
            visible: page.viewModel.choosesPolicy
            labels: page.viewModel.policies
            captions: page.viewModel.policyCaptions
            currentIndex: page.viewModel.policyIndex
            onPicked: index => page.viewModel.policyIndex = index
        }
    }
}
