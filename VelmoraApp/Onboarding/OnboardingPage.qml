pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Style

// One step: its title, and its text, choice or configuration.
Item {
    id: page

    required property OnboardingViewModel viewModel
    readonly property Item focusItem: Window.activeFocusItem

    objectName: "onboardingPage"
    Accessible.role: Accessible.Pane
    Accessible.name: viewModel.title
    Accessible.description: viewModel.text
    Accessible.focusable: true
    Component.onCompleted: takeKeyboard()
    onFocusItemChanged: reveal()

    // What takes the keyboard is scrolled into sight.
    function reveal() {
        let item = focusItem;
        while (item && item !== content)
            item = item.parent;
        if (!item)
            return;
        const top = focusItem.mapToItem(content, 0, 0).y - Theme.large;
        const bottom = top + focusItem.height + 2 * Theme.large;
        flickable.contentY = Math.max(0, Math.min(flickable.contentY, top), bottom - flickable.height);
    }
    function takeKeyboard() {
        if (viewModel.choosesPolicy)
            choices.takeKeyboard();
        else
            forceActiveFocus(Qt.OtherFocusReason);
    }

    Flickable {
        id: flickable
        anchors.fill: parent
        contentHeight: Math.max(height, content.implicitHeight)
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {
        }

        Column {
            id: content
            anchors.centerIn: parent
            width: Math.min(Theme.measure, parent.width)
            spacing: Theme.large

            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: !page.viewModel.connects
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
            Column {
                width: parent.width
                visible: page.viewModel.choosesPolicy && page.viewModel.found.length > 0
                spacing: Theme.tight

                Label {
                    objectName: "foundSessions"
                    width: parent.width
                    text: page.viewModel.found
                    wrapMode: Text.Wrap
                }
                Label {
                    objectName: "policyConsequence"
                    width: parent.width
                    text: page.viewModel.consequence
                    color: Theme.textSecondary
                    wrapMode: Text.Wrap
                }
            }
            OnboardingConnection {
                width: parent.width
                visible: page.viewModel.connects
                viewModel: page.viewModel.connection
            }
        }
    }
}
