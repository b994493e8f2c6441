pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Velmora
import Velmora.Style

// One step of the help.
SettingsSectionBlock {
    id: block

    required property var section
    required property HelpViewModel viewModel

    title: section.title

    Repeater {
        model: block.section.passages.length

        HelpPassage {
            required property int index

            Layout.fillWidth: true
            passage: block.section.passages[index]
            viewModel: block.viewModel
        }
    }
}
