pragma Singleton
import QtQuick
import Velmora.Style

// Every colour, size and font of the application, named by role. No other file holds one.
QtObject {
    id: theme

    // Follows the system. The tests and the screenshots assign it.
    property bool dark: SystemAppearance.dark

    // Surfaces, from back to front.
    readonly property color sidebar: dark ? "#232326" : "#ececef"
    readonly property color window: dark ? "#1c1c1e" : "#f6f6f8"
    readonly property color card: dark ? "#28282b" : "#ffffff"
    readonly property color control: dark ? "#37373b" : "#ffffff"
    readonly property color controlPressed: dark ? "#3e3e43" : "#e9e9ec"
    readonly property color well: dark ? "#1f1f22" : "#f3f3f5"
    readonly property color hover: dark ? "#0dffffff" : "#08000000"
    readonly property color selection: dark ? "#264c9bff" : "#1a0a63d1"
    readonly property color shade: dark ? "#99000000" : "#52000000"

    // Lines: between rows, around what floats above the rest, and around controls, which must be found without their
    // text.
    readonly property color hairline: dark ? "#38383c" : "#e3e3e7"
    readonly property color frame: dark ? "#56565b" : "#c9c9cf"
    readonly property color outline: dark ? "#8a8a91" : "#85858c"

    // The switch.
    readonly property color switchOff: outline
    readonly property color knob: "#ffffff"

    // Text.
    readonly property color text: dark ? "#f2f2f4" : "#1d1d1f"
    readonly property color textSecondary: dark ? "#a9a9b0" : "#62626a"
    readonly property color textOnAccent: "#ffffff"

    // Meanings: text colours; `tint` of each is the matching background.
    readonly property color accent: dark ? "#62a8ff" : "#0a5fca"
    readonly property color accentFill: dark ? "#1a6fdc" : "#0a63d1"
    readonly property color accentFillPressed: dark ? "#155cb8" : "#0850ab"
    readonly property color positive: dark ? "#5fcf80" : "#19703a"
    readonly property color caution: dark ? "#e8b04a" : "#7f5500"
    readonly property color danger: dark ? "#ff8a80" : "#b3261e"
    readonly property color dangerFill: dark ? "#c93b32" : "#c0291f"
    readonly property color dangerFillPressed: dark ? "#a82f27" : "#9d2018"

    // Distances, on a grid of four.
    readonly property int grid: 4
    readonly property int hair: 1
    readonly property int tight: grid
    readonly property int small: 2 * grid
    readonly property int medium: 3 * grid
    readonly property int large: 4 * grid
    readonly property int wide: 6 * grid

    // Sizes.
    readonly property int controlHeight: 7 * grid
    readonly property int rowHeight: 11 * grid
    readonly property int controlRadius: 6
    readonly property int cardRadius: 10
    readonly property int focusWidth: 2
    readonly property int switchWidth: 9 * grid
    readonly property int switchHeight: 5 * grid
    readonly property int scrollBarWidth: 6
    readonly property int symbol: 4 * grid
    readonly property int symbolMedium: 6 * grid
    readonly property int symbolLarge: 10 * grid
    readonly property int sidebarWidth: 44 * grid
    readonly property int narrowSidebarWidth: 16 * grid
    readonly property int pickerWidth: 32 * grid
    readonly property int widePickerWidth: 44 * grid
    readonly property int pickerListWidth: 60 * grid
    readonly property int captionedListWidth: 72 * grid
    readonly property int headerHeight: 8 * grid
    readonly property int sessionHeight: 14 * grid
    readonly property int dialogWidth: 112 * grid
    readonly property int measure: 120 * grid
    // Below this the sidebar shows symbols only.
    readonly property int roomyWindowWidth: 720
    readonly property int minimumWindowWidth: 600
    readonly property int minimumWindowHeight: 480
    readonly property int windowWidth: 960
    readonly property int windowHeight: 640

    // More lines than any text here has.
    readonly property int mostLines: 100000

    // Shares of one.
    readonly property real disabledOpacity: 0.5
    readonly property real leastScrollHandle: 0.08

    // Fonts.
    readonly property font title: face(22, Font.DemiBold)
    readonly property font figure: face(18, Font.DemiBold)
    readonly property font heading: face(13, Font.DemiBold)
    readonly property font body: face(13, Font.Normal)
    readonly property font caption: face(12, Font.Normal)
    readonly property font code: Qt.font({
            "family": SystemAppearance.fixedFontFamily,
            "pixelSize": 12
        })

    // Times, in milliseconds: for a control to change, before a tool tip shows, and for what says that it was done.
    property int quick: 120
    readonly property int patience: 600
    readonly property int acknowledgement: 2000

    function face(size: int, weight: int): font {
        return Qt.font({
                "pixelSize": size,
                "weight": weight
            });
    }

    function colorOf(meaning: int): color {
        switch (meaning) {
        case Meaning.Positive:
            return positive;
        case Meaning.Caution:
            return caution;
        case Meaning.Danger:
            return danger;
        }
        return meaning === Meaning.Quiet ? textSecondary : text;
    }

    function tint(meaning: color): color {
        return Qt.rgba(meaning.r, meaning.g, meaning.b, dark ? 0.16 : 0.1);
    }
}
