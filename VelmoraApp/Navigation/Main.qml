pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// The main window: the sections at the left, the selected one at the right.
ApplicationWindow {
    id: window

    required property ViewModels viewModels
    readonly property MainWindowViewModel mainWindow: viewModels.mainWindow
    readonly property bool introduces: viewModels.onboarding.needed && !viewModels.otherBridge.serves
    readonly property bool browses: !viewModels.onboarding.needed && !viewModels.otherBridge.serves

    objectName: "mainWindow"
    title: mainWindow.applicationName
    onClosing: close => close.accepted = mainWindow.closeRequested()

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: window.mainWindow.quit()
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.close()
    }
    Shortcut {
        sequences: ["F5"]
        enabled: window.browses
        onActivated: window.viewModels.dashboard.refresh()
    }
    Shortcut {
        sequence: "Ctrl+F"
        enabled: window.browses
        onActivated: {
            window.viewModels.navigation.showHistory();
            history.takeSearch();
        }
    }
    Shortcut {
        sequence: "Ctrl+,"
        enabled: window.browses
        onActivated: window.viewModels.navigation.showSettings()
    }
    Repeater {
        model: window.viewModels.navigation.sections

        Item {
            id: place

            required property int index

            Shortcut {
                sequence: "Ctrl+" + (place.index + 1)
                enabled: window.browses
                onActivated: window.viewModels.navigation.selectedIndex = place.index
            }
        }
    }

    Repeater {
        model: window.viewModels.otherBridge.serves ? 1 : 0

        OtherBridgeView {
            anchors.fill: parent
            focus: true
            viewModel: window.viewModels.otherBridge
            onQuitRequested: window.mainWindow.quit()
        }
    }
    Repeater {
        model: window.introduces ? 1 : 0

        OnboardingView {
            anchors.fill: parent
            focus: true
            viewModel: window.viewModels.onboarding
        }
    }
    RowLayout {
        anchors.fill: parent
        visible: window.browses
        spacing: 0
        // What had the keyboard stood here before.
        onVisibleChanged: if (visible)
            nextItemInFocusChain().forceActiveFocus(Qt.OtherFocusReason)

        Sidebar {
            Layout.fillHeight: true
            navigation: window.viewModels.navigation
            narrow: window.width < Theme.roomyWindowWidth
            onAboutRequested: if (!window.mainWindow.showAbout())
                about.open()
            onQuitRequested: window.mainWindow.quit()
        }
        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: window.viewModels.navigation.selectedIndex

            DashboardView {
                viewModel: window.viewModels.dashboard
                recentRequests: window.viewModels.recentRequests
            }
            SessionsView {
                viewModel: window.viewModels.sessions
            }
            HistoryView {
                id: history
                viewModel: window.viewModels.history
                onPrivacySettingsRequested: {
                    window.viewModels.settings.showPrivacy();
                    window.viewModels.navigation.showSettings();
                }
            }
            SectionLoader {
                view: "SettingsView.qml"
                viewModel: window.viewModels.settings
                current: window.viewModels.navigation.showsSettings
            }
            SectionLoader {
                view: "HelpView.qml"
                viewModel: window.viewModels.help
                current: window.viewModels.navigation.showsHelp
            }
        }
    }

    Dialog {
        id: about
        objectName: "aboutDialog"
        title: qsTr("About Velmora")
        text: qsTr("%1 %2").arg(window.mainWindow.applicationName).arg(window.mainWindow.applicationVersion) + "\n\n" + window.mainWindow.notices
        confirmText: qsTr("OK")
        cancelText: ""
    }
    Dialog {
        objectName: "closeDialog"
        visible: window.mainWindow.explainsClosing
        title: qsTr("Close Velmora?")
        text: window.mainWindow.closeExplanation
        confirmText: qsTr("Quit Velmora")
        onAccepted: window.mainWindow.confirmClosing()
        onRejected: window.mainWindow.cancelClosing()
    }
}
