import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// Creation dialog: protocol type, name, and the type's parameters, which the
// operator may set before the device is created. createCommDevice hands the
// choice to the list view.
DialogFrame {
    id: root
    property string devType
    property var typeList: DevicesManager.offeredDeviceTypes
    signal createCommDevice(string devType, string devDisplayName)
    signal messageRequested(int type, string text)

    title: DevicesManager.qsLMTr("Lang_DeviceManager")
    width: 760
    height: 540

    // A name not yet taken: the type without "Module" and the first free number.
    function defaultName(type) {
        var base = type.replace(/Module$/, "")
        var names = []
        var list = DevicesManager.commDeviceList
        for (var i = 0; i < list.length; ++i)
            names.push(list[i].deviceName)
        for (var n = 1; ; ++n) {
            if (names.indexOf(base + n) < 0)
                return base + n
        }
    }
    function chooseType(index) {
        if (index < 0 || index >= typeList.length)
            return
        typeBox.currentIndex = index
        root.devType = typeList[index]
        nameField.text = defaultName(root.devType)
        preview.build([])
        if (DevicesManager.loadAlgorithmTabXML(root.devType))
            preview.build(DevicesManager.itemList(root.devType))
        if (typeof MainWindow !== "undefined" && MainWindow)
            MainWindow.repaintWindow()
    }
    function openFor() {
        open()
        chooseType(Math.max(0, typeList.indexOf(root.devType)))
    }
    function accept() {
        var name = nameField.text.trim()
        if (root.devType.length === 0 || name.length === 0)
            return
        root.createCommDevice(root.devType, name)
    }
    onClosed: preview.build([])

    LmText {
        id: typeLabel
        x: 20
        y: 16
        width: 120
        height: 28
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        text: DevicesManager.qsLMTr("ProtocolType")
    }
    LmComboBox {
        id: typeBox
        objectName: "typeBox"
        anchors { left: typeLabel.right; verticalCenter: typeLabel.verticalCenter }
        width: 220
        height: 28
        comboBoxListModel: root.typeList
        onSigCurrentSelectItemChanged: root.chooseType(index)
    }
    LmText {
        id: nameLabel
        anchors { left: typeBox.right; leftMargin: 30; verticalCenter: typeLabel.verticalCenter }
        width: 90
        height: 28
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        text: DevicesManager.qsLMTr("deviceName")
    }
    Rectangle {
        id: nameFrame
        anchors { left: nameLabel.right; right: parent.right; rightMargin: 20; verticalCenter: typeLabel.verticalCenter }
        height: 28
        radius: 3
        border.color: nameField.activeFocus ? Theme.controlBorderFocus : Theme.controlBorder
        TextInput {
            id: nameField
            objectName: "nameField"
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            verticalAlignment: TextInput.AlignVCenter
            clip: true
            selectByMouse: true
            maximumLength: 64
            font.pixelSize: Theme.fontBody
            color: Theme.text
            validator: RegExpValidator { regExp: root.devType === "ProfinetModule" ? /[A-Za-z0-9.\-]*/ : /.*/ }
        }
        ToolTip.visible: root.devType === "ProfinetModule" && nameField.activeFocus
        ToolTip.text: DevicesManager.qsLMTr("Lang_ProfinetToolTip")
    }
    SectionHeading {
        id: previewHeading
        anchors { left: parent.left; right: parent.right; top: typeLabel.bottom; topMargin: 12 }
        text: DevicesManager.qsLMTr("通信参数")
    }
    ItemPanel {
        id: preview
        objectName: "previewPanel"
        anchors { left: parent.left; right: parent.right; top: previewHeading.bottom; bottom: buttons.top
                  leftMargin: 6; bottomMargin: 10 }
        onItemMessage: root.messageRequested(type, text)
    }
    Row {
        id: buttons
        anchors { right: parent.right; bottom: parent.bottom; margins: 16 }
        spacing: 10
        LmButton {
            objectName: "createConfirm"
            enabled: nameField.text.trim().length > 0
            text: DevicesManager.qsLMTr("Create")
            onClicked: root.accept()
        }
        LmButton {
            objectName: "createCancel"
            primary: false
            text: DevicesManager.qsLMTr("Lang_ClickCancel")
            onClicked: root.close()
        }
    }
}
