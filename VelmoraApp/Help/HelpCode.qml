import QtQuick
import Velmora
import Velmora.Style

// A text to copy, with the button that copies it.
Column {
    id: code

    required property var passage
    required property HelpViewModel viewModel

    spacing: Theme.small

    SettingsCodeBlock {
        objectName: code.passage.name + "Code"
        width: code.width
        name: code.passage.name
        text: code.passage.text
    }
    SettingsCopyButton {
        objectName: code.passage.name + "Copy"
        title: code.viewModel.copyTitle
        help: code.passage.copyHelp
        copiedText: code.viewModel.copiedText
        value: code.passage.text
    }
}
