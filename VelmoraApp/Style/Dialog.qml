import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// A modal question: what would happen, and one or two buttons. If it cannot be undone, the keyboard starts on Cancel.
T.Dialog {
    id: control

    property string text
    property string confirmText
    // Empty leaves only the one button.
    property string cancelText: qsTr("Cancel")
    property bool destructive: false

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(Theme.dialogWidth, parent ? parent.width - 2 * Theme.large : Theme.dialogWidth)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: Theme.wide
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    onOpened: (destructive ? cancelButton : confirmButton).forceActiveFocus(Qt.TabFocusReason)

    contentItem: ColumnLayout {
        spacing: Theme.small
        Accessible.role: Accessible.Dialog
        Accessible.name: control.title

        Label {
            objectName: "dialogTitle"
            Layout.fillWidth: true
            text: control.title
            font: Theme.heading
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Label {
            objectName: "dialogText"
            Layout.fillWidth: true
            text: control.text
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }
        RowLayout {
            Layout.topMargin: Theme.large
            Layout.alignment: Qt.AlignRight
            spacing: Theme.small

            Button {
                id: cancelButton
                objectName: "dialogCancel"
                visible: text.length > 0
                text: control.cancelText
                onClicked: control.reject()
            }
            Button {
                id: confirmButton
                objectName: "dialogConfirm"
                text: control.confirmText
                highlighted: true
                destructive: control.destructive
                onClicked: control.accept()
            }
        }
    }

    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.card
        border.width: Theme.hair
        border.color: Theme.frame
    }

    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
}
