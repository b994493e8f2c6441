pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

// Picks one of a few values.
T.ComboBox {
    id: control

    // What each entry means, shown below it in the open list; as many as entries, or none.
    property var captions: []
    // The width of the open list, for entries that are wider than the closed picker.
    property real listWidth: 0

    implicitWidth: Theme.pickerWidth
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: Theme.small
    rightPadding: Theme.symbol + Theme.small
    font: Theme.body
    focusPolicy: Qt.StrongFocus
    Accessible.description: displayText
    Keys.forwardTo: [press]
    ToolTip.visible: hovered && !popup.visible && ToolTip.text.length > 0
    ToolTip.text: captions[currentIndex] ?? ""
    ToolTip.delay: Theme.patience

    // A closed picker opens on the arrows too; an arrow meant for the surrounding list never changes it.
    Keys.onUpPressed: event => openBy(event)
    Keys.onDownPressed: event => openBy(event)

    function openBy(event: var) {
        event.accepted = !popup.visible;
        if (event.accepted)
            popup.open();
    }

    Press {
        id: press
        control: control
        takesReturn: false
        onPressed: control.popup.open()
    }

    delegate: ItemDelegate {
        id: choice

        required property int index
        required property var model

        objectName: control.objectName + "Choice" + index
        width: ListView.view ? ListView.view.width : implicitWidth
        text: control.textAt(index)
        caption: control.captions[index] ?? ""
        symbol: ""
        highlighted: control.highlightedIndex === index
        hoverEnabled: control.hoverEnabled
    }

    indicator: Icon {
        x: control.width - width - Theme.tight
        y: (control.height - height) / 2
        symbol: "chevron.up.chevron.down"
        opacity: control.enabled ? 1 : Theme.disabledOpacity
    }

    contentItem: Label {
        text: control.displayText
        font: control.font
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        opacity: control.enabled ? 1 : Theme.disabledOpacity
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: control.down || control.hovered ? Theme.controlPressed : Theme.control
        border.width: Theme.hair
        border.color: Theme.outline

        FocusRing {
            shown: control.visualFocus
        }
    }

    popup: T.Popup {
        y: control.height + Theme.tight
        width: Math.max(control.width, control.listWidth)
        height: Math.min(contentItem.implicitHeight + 2 * padding, control.Window.height - 2 * Theme.large)
        margins: Theme.large
        padding: Theme.tight

        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: control.delegateModel
            currentIndex: control.highlightedIndex
            highlightMoveDuration: 0
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {
            }
        }

        background: Rectangle {
            radius: Theme.controlRadius + Theme.tight
            color: Theme.card
            border.width: Theme.hair
            border.color: Theme.frame
        }
    }
}
