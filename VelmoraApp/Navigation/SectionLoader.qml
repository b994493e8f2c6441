import QtQuick
import QtQuick.Layouts

// A section that is made when it is first shown: the window is there sooner, and the system is asked nothing before.
Loader {
    id: place

    required property string view
    required property QtObject viewModel
    readonly property bool current: StackLayout.isCurrentItem

    onCurrentChanged: if (current && status === Loader.Null)
        setSource(view, {
                "viewModel": viewModel
            })
}
