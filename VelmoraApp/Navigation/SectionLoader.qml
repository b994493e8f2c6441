import QtQuick

// Creates a section when it is first shown, so that the window opens sooner and the system is not queried before.
Loader {
    id: place

    required property string view
    required property QtObject viewModel
    // Not StackLayout's attached property: Qt 6.4 never frees it.
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
