import QtQuick
import QtQuick.Templates as T

// A text field that searches while one types. Escape or its button empties it.
TextField {
    id: field

    leftPadding: Theme.symbol + 2 * Theme.small
    rightPadding: clearButton.visible ? clearButton.width + Theme.small : Theme.small
    inputMethodHints: Qt.ImhNoPredictiveText
    Accessible.searchEdit: true

    Keys.onEscapePressed: event => {
        event.accepted = length > 0;
        field.clear();
    }

    Icon {
        x: Theme.small
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
    }

    T.AbstractButton {
        id: clearButton
        objectName: "clearSearch"
        anchors.right: parent.right
        width: height
        height: parent.height
        visible: field.length > 0
        focusPolicy: Qt.NoFocus
        onClicked: field.clear()
        Accessible.name: qsTr("Clear search")
        Accessible.onPressAction: clicked()

        contentItem: Item {
            Icon {
                anchors.centerIn: parent
                symbol: "xmark.circle.fill"
            }
        }
    }
}
