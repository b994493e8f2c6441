import QtQuick
import QtQuick.Controls.impl

// A symbol in one colour. It says nothing to assistive technology: what it stands beside does.
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
