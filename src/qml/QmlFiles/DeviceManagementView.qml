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
        function onDescriptionProblemsChanged() { root.showDescriptionProblems() }
        function onUnreadableDevicesChanged() { root.showDescriptionProblems() }
    }

    // Description files that cannot be read are named once, with their line,
    // when the page is on screen and whenever another one turns up. A box
    // opened while the window is still being mapped would end up behind it,
    // hence the short wait after the window shows.
    readonly property bool onScreen: root.visible && (typeof MainWindow === "undefined" || !MainWindow || MainWindow.visible !== false)
    onOnScreenChanged: if (onScreen) problemsAfterShow.restart()
    Timer {
        id: problemsAfterShow
        interval: 300
        onTriggered: root.showDescriptionProblems()
    }
    property var shownProblems: []
    function showDescriptionProblems() {
        if (!root.onScreen)
            return
        var texts = DevicesManager.descriptionProblems.slice()
        var devices = DevicesManager.unreadableDevices
        for (var i = 0; i < devices.length; ++i)
            texts.push(devices[i].problem)
        var fresh = []
        for (var j = 0; j < texts.length; ++j) {
            if (root.shownProblems.indexOf(texts[j]) < 0 && fresh.indexOf(texts[j]) < 0)
                fresh.push(texts[j])
        }
        root.shownProblems = root.shownProblems.concat(fresh)
        for (var k = 0; k < fresh.length; ++k)
            launcher.open(MessageBox.MessageBoxType.Warning, fresh[k])
    }
    Component.onCompleted: if (onScreen) problemsAfterShow.restart()

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
