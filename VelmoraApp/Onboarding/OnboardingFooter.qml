pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Style

// Back, forward, and the progress between them.
Item {
    id: footer

    required property OnboardingViewModel viewModel

    implicitHeight: forward.height

    Button {
        objectName: "onboardingBack"
        text: qsTr("Back")
        enabled: footer.viewModel.canGoBack
        onClicked: footer.viewModel.back()
    }
    Row {
        objectName: "onboardingProgress"
        anchors.centerIn: parent
        spacing: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: footer.viewModel.progress

        Repeater {
            model: footer.viewModel.stepCount

            Rectangle {
                required property int index

                width: Theme.small
                height: width
                radius: width / 2
                color: index === footer.viewModel.stepIndex ? Theme.accent : Theme.outline
            }
        }
    }
    Button {
        id: forward
        objectName: "onboardingForward"
        anchors.right: parent.right
        text: footer.viewModel.forwardText
        highlighted: true
        onClicked: footer.viewModel.forward()
    }
}
