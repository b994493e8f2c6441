pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The introduction, in place of the window's content until it is over. Return goes on, Escape goes back.
FocusScope {
    id: onboarding

    required property OnboardingViewModel viewModel

    objectName: "onboarding"
    Keys.onReturnPressed: event => goOn(event)
    Keys.onEnterPressed: event => goOn(event)
    Keys.onEscapePressed: viewModel.back()

    // A key that is held goes one step.
    function goOn(event: var) {
        if (!event.isAutoRepeat)
            viewModel.forward();
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.wide
        spacing: Theme.large

        // A page of its own a step, so that the keyboard and assistive technology arrive anew.
        Repeater {
            model: [onboarding.viewModel.stepIndex]

            OnboardingPage {
                Layout.fillWidth: true
                Layout.fillHeight: true
                viewModel: onboarding.viewModel
            }
        }
        OnboardingFooter {
            Layout.fillWidth: true
            viewModel: onboarding.viewModel
        }
    }
}
