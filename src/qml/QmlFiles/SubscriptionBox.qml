import QtQuick 2.15
import comm.GlobalEventFilter 1.0
import "ControlHelpers.js" as Helpers

// Framed one-line text box. editFinished reports the text when the operator
// confirms it (Return, or leaving the box).
Rectangle {
    id: root
    property string currentText
    property bool readOnly: false
    property int maximumLength: 32767
    property int fontSize: Theme.fontBody
    property color textColor: Theme.text
    property color borderColor: Theme.controlBorder
    property color focusBorderColor: Theme.controlBorderFocus
    property int borderWidth: 1
    signal editFinished(string text)

    implicitWidth: 180
    implicitHeight: 26
    radius: 3
    color: root.readOnly || !root.enabled ? Theme.controlReadOnly : Theme.controlBackground
    border.width: root.borderWidth
    border.color: input.activeFocus ? root.focusBorderColor : root.borderColor

    TextInput {
        id: input
        objectName: "subscriptionInput"
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 6
        verticalAlignment: TextInput.AlignVCenter
        clip: true
        readOnly: root.readOnly
        maximumLength: root.maximumLength
        selectByMouse: true
        font.pixelSize: root.fontSize
        color: root.enabled ? root.textColor : Theme.textDisabled
        Component.onCompleted: text = root.currentText
        onEditingFinished: {
            if (root.readOnly || text === root.currentText)
                return
            root.currentText = text
            root.editFinished(text)
        }
    }
    // A press anywhere else ends the edit, so the value is confirmed even when
    // the press lands on something that takes no focus.
    GlobalEventFilter {
        filterEnable: input.activeFocus
        onGlobalMousePressEvent: {
            if (!Helpers.containsGlobal(root, globalPos))
                input.focus = false
        }
    }
    onCurrentTextChanged: input.text = currentText
}
