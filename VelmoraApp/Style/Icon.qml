import QtQuick
import QtQuick.Controls.impl

// A symbol in one colour. Assistive technology ignores it and reads the text beside it.
ColorImage {
    // The role's name; see Symbols/README.md. Empty shows nothing.
    property string symbol
    property int size: Theme.symbol

    visible: symbol.length > 0
    source: symbol.length > 0 ? "qrc:/velmora/icons/" + symbol + ".svg" : ""
    sourceSize.width: size
    sourceSize.height: size
    color: Theme.textSecondary
    Accessible.ignored: true
}
