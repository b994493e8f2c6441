import QtQuick
import Velmora
import Velmora.Style

// The application's window, light or dark as told.
Main {
    required property bool dark

    Component.onCompleted: Theme.dark = dark
}
