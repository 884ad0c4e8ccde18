import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// Dialog to add an address or edit one: name, first soft-element address,
// number of points, integer type, polling, time-out and upload. It holds no
// rules: createAddress hands the values to the address view, which lets the
// model check and write them.
DialogFrame {
    id: root
    property bool isProfinet: true
    property bool editing: false
    property var intTypes: isProfinet ? ["16bit", "32bit", "8bit"] : ["16bit", "32bit"]
    property int minAddress: 0
    property int maxAddress: 0
    property alias addressName: nameField.text
    property alias firstAddress: firstBox.currentValue
    property alias points: pointsBox.currentValue
    property alias intType: typeBox.currentIndex
    property alias pollEnable: pollSwitch.switchStatus
    property alias timeout: timeoutBox.currentValue
    property alias uploadEnable: uploadSwitch.switchStatus
    signal createAddress(var addressInfo)

    title: DevicesManager.qsLMTr("Lang_AddressManager")
    width: 420
    height: 420

    // Starts from an address entry (the defaults of a new address, or the
    // address being edited); null leaves the fields as they are.
    function startFrom(info) {
        if (!info)
            return
        nameField.text = info.addrName // a new address starts as "Address"
        typeBox.currentIndex = Math.max(0, Math.min(info.intType, root.intTypes.length - 1))
        firstBox.currentValue = info.firstAddr
        pointsBox.currentValue = Math.max(1, info.addrLength)
        pollSwitch.switchStatus = info.pollEnable
        timeoutBox.currentValue = info.timeout
        uploadSwitch.switchStatus = info.uploadEnable
    }
    // The first-address range from the gateway's constraints; a first address
    // outside it starts at the gateway's default.
    function setRange(min, max, def) {
        root.minAddress = min
        root.maxAddress = max
        if (max > min && (firstBox.currentValue < min || firstBox.currentValue > max))
            firstBox.currentValue = def
    }
    function addressInfo() {
        return {
            "AddressName": nameField.text.trim(),
            "IntDataType": typeBox.currentIndex,
            "SoftElementAddress": Math.round(firstBox.currentValue),
            "SoftElementNum": Math.round(pointsBox.currentValue),
            "OverTime": Math.round(timeoutBox.currentValue),
            "PollEnable": pollSwitch.switchStatus,
            "Upload": uploadSwitch.switchStatus
        }
    }

    Column {
        anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 12 }
        spacing: 4
        FieldRow {
            label: DevicesManager.qsLMTr("deviceName")
            controlWidth: 220
            Rectangle {
                anchors.fill: parent
                radius: 3
                border.color: nameField.activeFocus ? Theme.controlBorderFocus : Theme.controlBorder
                TextInput {
                    id: nameField
                    objectName: "addressNameField"
                    anchors { fill: parent; leftMargin: 6; rightMargin: 6 }
                    verticalAlignment: TextInput.AlignVCenter
                    clip: true
                    selectByMouse: true
                    maximumLength: 64
                    font.pixelSize: Theme.fontBody
                    color: Theme.text
                }
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("RunParam_Soft Component Address")
            controlWidth: 220
            LmRangeInputBox {
                id: firstBox
                objectName: "firstAddressBox"
                anchors.fill: parent
                minValue: root.minAddress
                maxValue: root.maxAddress
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("RunParam_Soft Component Points")
            controlWidth: 220
            LmRangeInputBox {
                id: pointsBox
                objectName: "pointsBox"
                anchors.fill: parent
                currentValue: 1
                minValue: 1
                maxValue: 256
                ToolTip.visible: !root.isProfinet && pointsHover.containsMouse
                ToolTip.text: DevicesManager.qsLMTr("EIP_SoftElementNum_tip")
                MouseArea { id: pointsHover; anchors.fill: parent; hoverEnabled: true; acceptedButtons: Qt.NoButton }
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("RunParam_IntDataType")
            controlWidth: 220
            LmComboBox {
                id: typeBox
                objectName: "intTypeBox"
                anchors.fill: parent
                translateItems: false
                comboBoxListModel: root.intTypes
                currentIndex: 0
                onSigCurrentSelectItemChanged: currentIndex = index
            }
        }
        SectionHeading {
            width: parent.width
            text: DevicesManager.qsLMTr("通信参数")
        }
        FieldRow {
            label: DevicesManager.qsLMTr("RunParam_Polling")
            LmSwitchButton { id: pollSwitch; objectName: "pollSwitch"; anchors.verticalCenter: parent.verticalCenter }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("RunParam_Timeout")
            controlWidth: 220
            LmRangeInputBox {
                id: timeoutBox
                objectName: "timeoutBox"
                anchors.fill: parent
                minValue: 0
                maxValue: 600000
                step: 100
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("Upload")
            controlWidth: 220
            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8
                LmSwitchButton { id: uploadSwitch; objectName: "uploadSwitch" }
                LmText {
                    color: Theme.textCaption
                    font.pixelSize: Theme.fontCaption
                    text: DevicesManager.qsLMTr("UploadTip")
                }
            }
        }
    }
    LmButton {
        objectName: "addressConfirm"
        anchors { right: parent.right; bottom: parent.bottom; margins: 16 }
        text: DevicesManager.qsLMTr("Confirm")
        onClicked: root.createAddress(root.addressInfo())
    }
}
