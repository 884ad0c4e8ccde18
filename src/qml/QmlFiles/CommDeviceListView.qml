import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// The device list: type and name of every device with its state and its
// connect switch, the "create" button and the right-click menu (rename,
// delete).
Rectangle {
    id: root
    property int currentDeviceID: -1
    signal messageRequested(int type, string text)

    color: Theme.surface

    function activateMainWindow() {
        if (typeof MainWindow !== "undefined" && MainWindow)
            MainWindow.requestActivate()
    }
    function createDevice(devType, devDisplayName) {
        var id = DevicesManager.createCommDevice(devType, devDisplayName)
        if (id !== -1 && id >= 0) {
            root.currentDeviceID = id
            createDlg.close()
        }
        activateMainWindow()
    }
    function deleteDevice(id) {
        root.currentDeviceID = DevicesManager.deleteCommDevice(id)
    }
    function renameDevice(id, name) {
        var renamed = DevicesManager.changeDeviceName(id, name)
        activateMainWindow()
        return renamed
    }

    // With nothing selected yet, the first device is shown (the list may be
    // loaded after the page).
    function selectFirstIfNone() {
        var list = DevicesManager.commDeviceList
        if (root.currentDeviceID < 0 && list.length > 0)
            root.currentDeviceID = list[0].deviceID
    }
    Component.onCompleted: selectFirstIfNone()
    Connections {
        target: DevicesManager
        function onCommDeviceListChanged() { root.selectFirstIfNone() }
    }

    ListHeader {
        id: header
        anchors { left: parent.left; right: parent.right; top: parent.top }
        title: DevicesManager.qsLMTr("Lang_ComDeviceList")
        onCreateClicked: createDlg.openFor()
    }

    ListView {
        id: list
        objectName: "deviceList"
        anchors { left: parent.left; right: parent.right; top: header.bottom; bottom: parent.bottom }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: DevicesManager.commDeviceList
        ScrollBar.vertical: ScrollBar {}
        // Devices the gateway runs whose description cannot be read: listed,
        // marked, and not selectable, as they have no parameters to show.
        footer: Column {
            width: list.width
            Repeater {
                model: DevicesManager.unreadableDevices
                delegate: UnreadableDeviceRow {
                    objectName: "unreadableRow" + index
                    width: list.width
                    entry: modelData
                }
            }
        }
        delegate: Rectangle {
            id: row
            objectName: "deviceRow" + index
            readonly property var device: modelData
            readonly property bool selected: device && device.deviceID === root.currentDeviceID
            width: list.width
            height: 56
            color: selected ? Theme.highlight : (rowArea.containsMouse ? Theme.rowHover : Theme.surface)

            Rectangle {
                visible: row.selected
                width: 3
                height: parent.height
                color: Theme.accent
            }
            MouseArea {
                id: rowArea
                anchors.fill: parent
                hoverEnabled: true
                acceptedButtons: Qt.LeftButton | Qt.RightButton
                onClicked: {
                    root.currentDeviceID = row.device.deviceID
                    if (mouse.button === Qt.RightButton)
                        contextMenu.openAt(row.device, mapToItem(list, mouse.x, mouse.y))
                }
            }
            Column {
                anchors { left: parent.left; leftMargin: 16; right: statusLabel.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
                spacing: 3
                LmText {
                    objectName: "deviceType"
                    width: parent.width
                    elide: Text.ElideRight
                    font.pixelSize: Theme.fontCaption
                    color: Theme.textCaption
                    text: row.device ? DevicesManager.qsLMTr(row.device.deviceType) : ""
                }
                LmText {
                    objectName: "deviceName"
                    width: parent.width
                    elide: Text.ElideRight
                    font.pixelSize: Theme.fontHeading
                    text: row.device ? row.device.deviceName : ""
                }
            }
            DeviceStatusLabel {
                id: statusLabel
                objectName: "deviceStatus"
                anchors { right: connectSwitch.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
                device: row.device
            }
            LmSwitchButton {
                id: connectSwitch
                objectName: "connectSwitch"
                anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
                switchStatus: row.device ? row.device.connectState : false
                onSwitchClicked: {
                    if (row.device && status !== row.device.connectState)
                        row.device.setConnectState(status)
                }
            }
            // The switch follows the device: a start that the gateway refused
            // puts it back.
            Connections {
                target: row.device
                function onConnectStateChanged() { connectSwitch.switchStatus = row.device.connectState }
                function onMessageBox(nMsgBoxType, strMsg) { root.messageRequested(nMsgBoxType, strMsg) }
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: 16 }
                height: 1
                color: Theme.rowSeparator
            }
        }
    }

    Popup {
        id: contextMenu
        objectName: "deviceMenu"
        property var device: null
        width: 120
        padding: 1
        background: Rectangle { color: Theme.surface; border.color: Theme.popupBorder; radius: 2 }
        // Opens at the press, moved up when it would leave the list.
        function openAt(device, pos) {
            contextMenu.device = device
            contextMenu.x = Math.min(pos.x, list.width - width)
            contextMenu.y = list.y + Math.min(pos.y, list.height - implicitHeight)
            open()
        }
        contentItem: Column {
            Repeater {
                model: [{ key: "Lang_Rename", name: "menuRename" }, { key: "Lang_Delete", name: "menuDelete" }]
                delegate: MouseArea {
                    objectName: modelData.name
                    width: 118
                    height: 30
                    hoverEnabled: true
                    onClicked: {
                        contextMenu.close()
                        if (modelData.key === "Lang_Rename")
                            renameDlg.openFor(contextMenu.device)
                        else
                            root.deleteDevice(contextMenu.device.deviceID)
                    }
                    Rectangle { anchors.fill: parent; color: parent.containsMouse ? Theme.highlight : "transparent" }
                    LmText {
                        anchors { left: parent.left; leftMargin: 14; verticalCenter: parent.verticalCenter }
                        text: DevicesManager.qsLMTr(modelData.key)
                    }
                }
            }
        }
    }

    CommManagementDlg {
        id: createDlg
        onCreateCommDevice: root.createDevice(devType, devDisplayName)
        onMessageRequested: root.messageRequested(type, text)
    }
    NameChangedDlg {
        id: renameDlg
        onNameAccepted: {
            if (root.renameDevice(deviceId, name))
                close()
        }
    }
}
