import QtQuick

// A section that is made when it is first shown: the window is there sooner, and the system is asked nothing before.
Loader {
    id: place

    required property string view
    required property QtObject viewModel
    // Not what StackLayout attaches, which Qt 6.4 never frees.
    required property bool current

    onCurrentChanged: make()
    Component.onCompleted: make()

    function make() {
        if (current && viewModel && status === Loader.Null)
            setSource(view, {
                    "viewModel": viewModel
                });
    }
}
