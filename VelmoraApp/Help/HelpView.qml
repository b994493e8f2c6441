pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// How to set Velmora up and how a client calls it, step by step, in a language of the user's choice.
SettingsPage {
    id: help

    required property HelpViewModel viewModel

    objectName: "help"
    title: qsTr("Help")

    ScreenHeader {
        Layout.fillWidth: true
        title: help.title

        Label {
            text: help.viewModel.languageLabel
            color: Theme.textSecondary
            Accessible.ignored: true
        }
        ComboBox {
            objectName: "helpLanguage"
            model: help.viewModel.languages
            currentIndex: help.viewModel.languageIndex
            Accessible.name: help.viewModel.languageLabel
            onActivated: index => help.viewModel.languageIndex = index
        }
    }
    // By number, so that another language changes the texts but not the scroll position.
    Repeater {
        model: help.viewModel.sections.length

        HelpSection {
            required property int index

            Layout.fillWidth: true
            section: help.viewModel.sections[index]
            viewModel: help.viewModel
        }
    }
}
