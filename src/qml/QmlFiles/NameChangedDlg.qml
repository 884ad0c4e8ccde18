import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// Rename dialog. nameAccepted hands the new name to the list view, which
// renames the device and closes the dialog when the gateway took it.
DialogFrame {
    id: root
    property int deviceId: -1
    property bool profinetName: false
    signal nameAccepted(int deviceId, string name)

    title: DevicesManager.qsLMTr("Lang_NameModify")
    width: 380
    height: 180

    function openFor(device) {
        if (!device)
            return
        root.deviceId = device.deviceID
        root.profinetName = device.deviceType === "ProfinetModule"
        nameField.text = device.deviceName
        open()
        nameField.forceActiveFocus()
        nameField.selectAll()
    }
    function accept() {
        root.nameAccepted(root.deviceId, nameField.text.trim())
    }

    LmText {
        id: nameLabel
        x: 20
        y: 24
        width: 100
        height: 28
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        text: DevicesManager.qsLMTr("deviceName")
    }
    Rectangle {
        anchors { left: nameLabel.right; right: parent.right; rightMargin: 20; verticalCenter: nameLabel.verticalCenter }
        height: 28
        radius: 3
        border.color: nameField.activeFocus ? Theme.controlBorderFocus : Theme.controlBorder
        TextInput {
            id: nameField
            objectName: "renameField"
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            verticalAlignment: TextInput.AlignVCenter
            clip: true
            selectByMouse: true
            maximumLength: 64
            font.pixelSize: Theme.fontBody
            color: Theme.text
            validator: RegExpValidator { regExp: root.profinetName ? /[A-Za-z0-9.\-]*/ : /.*/ }
            onAccepted: root.accept()
        }
        ToolTip.visible: root.profinetName && nameField.activeFocus
        ToolTip.text: DevicesManager.qsLMTr("Lang_ProfinetToolTip")
    }
    Row {
        anchors { right: parent.right; bottom: parent.bottom; margins: 16 }
        spacing: 10
        LmButton {
            objectName: "renameConfirm"
            text: DevicesManager.qsLMTr("Lang_Confirm")
            onClicked: root.accept()
        }
        LmButton {
            objectName: "renameCancel"
            primary: false
            text: DevicesManager.qsLMTr("Lang_ClickCancel")
            onClicked: root.close()
        }
    }
}
