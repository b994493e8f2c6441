pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The introduction, shown instead of the window's content until it is completed. Return continues, Escape goes back.
FocusScope {
    id: onboarding

    required property OnboardingViewModel viewModel

    objectName: "onboarding"
    Keys.onReturnPressed: event => goOn(event)
    Keys.onEnterPressed: event => goOn(event)
    Keys.onEscapePressed: viewModel.back()

    // A held key goes one step.
    function goOn(event: var) {
        if (!event.isAutoRepeat)
            viewModel.forward();
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.wide
        spacing: Theme.large

        // Each step is a new page, so that keyboard and assistive technology start over.
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
