import QtQuick 2.15
import comm.devicesManager 1.0

// The device manager page: the device list and, right of a divider, the
// selected device's parameters. Every message of the manager, the devices and
// their items opens a message box.
Rectangle {
    id: root
    property alias currentDeviceID: deviceList.currentDeviceID
    property alias deviceListView: deviceList
    property alias paramsView: params
    property alias messageBoxes: launcher

    color: Theme.page

    MessageBoxLauncher {
        id: launcher
    }
    Connections {
        target: DevicesManager
        function onMessageBox(nMsgBoxType, strMsg) { launcher.open(nMsgBoxType, strMsg) }
    }

    CommDeviceListView {
        id: deviceList
        objectName: "commDeviceListView"
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: 250
        onMessageRequested: launcher.open(type, text)
    }
    Rectangle {
        id: divider
        anchors { left: deviceList.right; top: parent.top; bottom: parent.bottom }
        width: 2
        color: Theme.divider
    }
    CommParamsView {
        id: params
        objectName: "commParamsView"
        anchors { left: divider.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        currentDeviceID: deviceList.currentDeviceID
        onMessageRequested: launcher.open(type, text)
    }
}
