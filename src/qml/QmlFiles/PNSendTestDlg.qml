import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// Test sending to one address of the table: the address, the data type
// (string, int or float) and the content. The model checks the text and
// reports the outcome.
DialogFrame {
    id: root
    property var pItemData: null
    readonly property var addresses: pItemData ? pItemData.addressList : []
    readonly property var dataTypes: ["string", "int", "float"]
    property alias addressIndex: addressBox.currentIndex
    property alias typeIndex: typeBox.currentIndex
    property alias content: contentField.text

    title: DevicesManager.qsLMTr("Lang_SendTest")
    width: 440
    height: 360

    function addressTexts() {
        var texts = []
        for (var i = 0; i < addresses.length; ++i)
            texts.push(addresses[i].serialNumber + " " + addresses[i].addrName)
        return texts
    }
    function send() {
        var address = addressBox.currentIndex >= 0 && addressBox.currentIndex < addresses.length
                ? addresses[addressBox.currentIndex] : null
        root.pItemData.sendTestData(root.dataTypes[typeBox.currentIndex], address, contentField.text)
    }

    Column {
        id: fields
        anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 12 }
        spacing: 4
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_AddressSelection")
            controlWidth: 240
            LmComboBox {
                id: addressBox
                objectName: "sendAddressBox"
                anchors.fill: parent
                translateItems: false
                comboBoxListModel: root.addressTexts()
                currentIndex: root.addresses.length > 0 ? 0 : -1
                onSigCurrentSelectItemChanged: currentIndex = index
            }
        }
        SectionHeading {
            width: parent.width
            text: DevicesManager.qsLMTr("Lang_DealMethod")
        }
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_SendDataType")
            controlWidth: 240
            LmComboBox {
                id: typeBox
                objectName: "sendTypeBox"
                anchors.fill: parent
                translateItems: false
                comboBoxListModel: root.dataTypes
                currentIndex: 1
                onSigCurrentSelectItemChanged: currentIndex = index
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_SendDataContent")
            controlWidth: 240
            Rectangle {
                anchors.fill: parent
                radius: 3
                border.color: contentField.activeFocus ? Theme.controlBorderFocus : Theme.controlBorder
                TextInput {
                    id: contentField
                    objectName: "sendContentField"
                    anchors { fill: parent; leftMargin: 6; rightMargin: 6 }
                    verticalAlignment: TextInput.AlignVCenter
                    clip: true
                    selectByMouse: true
                    font.pixelSize: Theme.fontBody
                    font.family: Theme.fontMonospace
                    color: Theme.text
                    onAccepted: root.send()
                }
            }
        }
        LmText {
            objectName: "typeExplain"
            x: 150
            width: parent.width - x - 16
            wrapMode: Text.WordWrap
            color: Theme.textCaption
            font.pixelSize: Theme.fontCaption
            visible: typeBox.currentIndex > 0
            text: DevicesManager.qsLMTr("Lang_TypeExplain")
        }
    }
    Row {
        anchors { right: parent.right; bottom: parent.bottom; margins: 16 }
        spacing: 10
        LmButton {
            objectName: "sendClear"
            primary: false
            text: DevicesManager.qsLMTr("Clear")
            onClicked: contentField.text = ""
        }
        LmButton {
            objectName: "sendButton"
            text: DevicesManager.qsLMTr("send")
            onClicked: root.send()
        }
    }
}
