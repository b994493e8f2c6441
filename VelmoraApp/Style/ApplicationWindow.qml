import QtQuick
import QtQuick.Templates as T

T.ApplicationWindow {
    color: Theme.window
    minimumWidth: Theme.minimumWindowWidth
    minimumHeight: Theme.minimumWindowHeight
    width: Theme.windowWidth
    height: Theme.windowHeight
    font: Theme.body

    // For the few controls that Fusion draws.
    palette {
        window: Theme.window
        windowText: Theme.text
        base: Theme.control
        text: Theme.text
        button: Theme.control
        buttonText: Theme.text
        highlight: Theme.accentFill
        highlightedText: Theme.textOnAccent
        placeholderText: Theme.textSecondary
        mid: Theme.outline
        light: Theme.card
        dark: Theme.hairline
    }
}
