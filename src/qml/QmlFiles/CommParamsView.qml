import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// The selected device: its parameter panel, the receive panel and, for
// stream devices, the status strip with the counters (and the peers of a
// TCP server) and the send panel with the outcome of the last send.
Rectangle {
    id: root
    property int currentDeviceID: -1
    property var currentDevice: null
    readonly property bool fieldbusDevice: currentDevice !== null && DevicesManager.checkPLCDevice(currentDevice.deviceID)
    readonly property var sendData: DevicesManager.sendDataNormalDevice
    readonly property bool showsStatus: currentDevice !== null && currentDevice.hasStatus
    readonly property bool showsPeers: showsStatus && currentDevice.deviceType === "TcpServerModule"
    property alias itemPanel: panel
    signal messageRequested(int type, string text)

    color: Theme.page

    function findDevice(id) {
        var list = DevicesManager.commDeviceList
        for (var i = 0; i < list.length; ++i) {
            if (list[i] && list[i].deviceID === id)
                return list[i]
        }
        return null
    }
    function selectDevice(id) {
        if (id < 0)
            return
        panel.build([])
        currentDevice = findDevice(id)
        if (currentDevice)
            panel.build(DevicesManager.getCurrentDeviceItems(id))
    }
    onCurrentDeviceIDChanged: selectDevice(currentDeviceID)
    Component.onCompleted: selectDevice(currentDeviceID)

    Connections {
        target: DevicesManager
        // A deleted device takes its controls with it; a list read again
        // (after the gateway came back) has new device objects under the
        // same ids, whose controls replace the old ones.
        function onCommDeviceListChanged() {
            var device = root.findDevice(root.currentDeviceID)
            if (device === root.currentDevice)
                return
            if (device) {
                root.selectDevice(root.currentDeviceID)
            } else {
                panel.build([])
                root.currentDevice = null
            }
        }
    }
    SectionHeading {
        id: paramsHeading
        anchors { left: parent.left; right: parent.right; top: parent.top }
        text: DevicesManager.qsLMTr("通信参数")
    }
    ItemPanel {
        id: panel
        objectName: "itemPanel"
        anchors { left: parent.left; right: parent.right; top: paramsHeading.bottom }
        // Fieldbus devices leave a fixed receive panel below their address
        // tables; stream devices give the receive panel what the items leave.
        height: root.fieldbusDevice
                ? Math.max(120, root.height - paramsHeading.height - 220)
                : Math.min(contentHeight, root.height - paramsHeading.height - 250 - sendPanel.height
                           - statusPanel.height)
        visible: root.currentDevice !== null
        onItemMessage: root.messageRequested(type, text)
    }
    Column {
        id: statusPanel
        objectName: "statusPanel"
        visible: root.showsStatus
        anchors { left: parent.left; right: parent.right; top: panel.bottom; leftMargin: 16; rightMargin: 16 }
        height: visible ? implicitHeight + 6 : 0
        topPadding: 6
        spacing: 6
        DeviceStatusStrip {
            objectName: "statusStrip"
            width: parent.width
            device: root.showsStatus ? root.currentDevice : null
        }
        PeerTable {
            objectName: "peerTable"
            visible: root.showsPeers
            width: parent.width
            device: root.showsPeers ? root.currentDevice : null
        }
    }
    Item {
        id: recvPanel
        objectName: "recvPanel"
        visible: root.currentDevice !== null
        anchors { left: parent.left; right: parent.right; top: statusPanel.bottom; bottom: sendPanel.visible ? sendPanel.top : parent.bottom }

        SectionHeading {
            id: recvHeading
            anchors { left: parent.left; right: parent.right; top: parent.top }
            text: DevicesManager.qsLMTr("接收数据")
            CheckBox {
                id: showHex
                objectName: "recvHexCheck"
                anchors { right: recvClear.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
                text: DevicesManager.qsLMTr("ShownAsHex")
                font.pixelSize: Theme.fontBody
                padding: 0
            }
            LmButton {
                id: recvClear
                objectName: "recvClear"
                primary: false
                height: 24
                anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
                text: DevicesManager.qsLMTr("Clear")
                onClicked: if (root.currentDevice) root.currentDevice.clearRecvDatas()
            }
        }
        Rectangle {
            anchors { left: parent.left; right: parent.right; top: recvHeading.bottom; bottom: parent.bottom
                      leftMargin: 16; rightMargin: 16; bottomMargin: 8 }
            color: Theme.surface
            border.color: Theme.frame
            radius: 3
            ListView {
                id: recvList
                objectName: "recvList"
                anchors.fill: parent
                anchors.margins: 4
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                model: root.currentDevice ? (showHex.checked ? root.currentDevice.recvHexDataList
                                                             : root.currentDevice.recvDataList) : []
                onCountChanged: positionViewAtEnd()
                ScrollBar.vertical: ScrollBar {
                    objectName: "recvScrollBar"
                    policy: recvList.count > 8 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
                }
                delegate: LmText {
                    width: recvList.width - 12
                    height: 20
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    font.family: Theme.fontMonospace
                    text: modelData
                }
            }
        }
    }
    Item {
        id: sendPanel
        objectName: "sendPanel"
        visible: root.currentDevice !== null && !root.fieldbusDevice
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: visible ? 100 : 0

        SectionHeading {
            id: sendHeading
            anchors { left: parent.left; right: parent.right; top: parent.top }
            text: DevicesManager.qsLMTr("发送数据")
            CheckBox {
                id: hexSend
                objectName: "hexSendCheck"
                anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
                text: DevicesManager.qsLMTr("16进制发送")
                font.pixelSize: Theme.fontBody
                padding: 0
                checked: root.sendData.hexEnable
                onToggled: root.switchHex(checked)
            }
        }
        Rectangle {
            id: sendFrame
            anchors { left: parent.left; right: sendButton.left; top: sendHeading.bottom; leftMargin: 16; rightMargin: 10 }
            height: 30
            color: Theme.controlBackground
            border.color: sendField.activeFocus ? Theme.controlBorderFocus : Theme.controlBorder
            radius: 3
            TextInput {
                id: sendField
                objectName: "sendField"
                anchors.fill: parent
                anchors.leftMargin: 8
                anchors.rightMargin: 8
                verticalAlignment: TextInput.AlignVCenter
                clip: true
                selectByMouse: true
                font.pixelSize: Theme.fontBody
                color: Theme.text
                text: root.sendData.text
                onTextChanged: root.sendData.setText(text)
                Keys.onReturnPressed: event.accepted = true
                Keys.onEnterPressed: event.accepted = true
            }
        }
        LmButton {
            id: sendButton
            objectName: "sendButton"
            anchors { right: sendClear.left; rightMargin: 10; verticalCenter: sendFrame.verticalCenter }
            text: DevicesManager.qsLMTr("send")
            onClicked: DevicesManager.gwSendData(root.currentDeviceID, sendField.text)
        }
        LmText {
            objectName: "sendOutcome"
            anchors { left: sendFrame.left; right: parent.right; top: sendFrame.bottom; topMargin: 3; rightMargin: 16 }
            elide: Text.ElideRight
            font.pixelSize: Theme.fontCaption
            color: root.currentDevice && root.currentDevice.sendFailed ? Theme.statusFault : Theme.statusOk
            text: root.currentDevice ? root.currentDevice.sendOutcome : ""
        }
        LmButton {
            id: sendClear
            objectName: "sendClear"
            primary: false
            anchors { right: parent.right; rightMargin: 16; verticalCenter: sendFrame.verticalCenter }
            text: DevicesManager.qsLMTr("Clear")
            onClicked: {
                sendField.text = ""
                root.sendData.setText("")
            }
        }
    }

    // Ticking "send as hex" rewrites the field into hexadecimal codes,
    // unticking turns the codes back into text.
    function switchHex(enable) {
        sendData.setHexEnable(enable)
        sendField.text = enable ? sendData.stringToHex(sendField.text) : sendData.hexToString(sendField.text)
    }
}
