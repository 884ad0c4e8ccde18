import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// The device page against the devices manager on the fake gateway. Creating
// through the dialog, switching on, the receive panel's text and hex views and
// sending are driven against the real gateway by tests/app/tst_page_e2e.cpp.
Item {
    id: page
    width: 1033
    height: 648

    Component { id: managementView; DeviceManagementView { width: 1033; height: 648 } }
    Component { id: spy; SignalSpy {} }

    TestCase {
        name: "DeviceViews"
        when: windowShown
        property var view: null

        function init() {
            TestGateway.reset()
        }
        function cleanup() {
            if (view)
                view.messageBoxes.closeAll()
            view = null
        }
        // Devices on the gateway, then the page; selects the first when asked.
        function openPage(devices, select) {
            var ids = []
            for (var i = 0; i < devices.length; ++i)
                ids.push(TestGateway.addModule(devices[i].type, devices[i].name))
            TestGateway.loadDevices()
            TestGateway.clearCalls()
            view = createTemporaryObject(managementView, page)
            verify(view !== null)
            if (select)
                view.currentDeviceID = ids[0]
            return ids
        }
        function device(id) { return DevicesManager.getDeviceById(id) }
        function rowOf(index) {
            var list = findChild(view.deviceListView, "deviceList")
            tryVerify(function() { return list.itemAtIndex(index) !== null })
            return list.itemAtIndex(index)
        }
        function boxSpy() { return createTemporaryObject(spy, page, { target: view.messageBoxes, signalName: "opened" }) }
        function panelChild(name) { return findChild(view.paramsView, name) }

        // Selecting the second device replaces the first one's controls.
        function test_selectingADeviceBuildsItsControls_data() {
            return [
                { tag: "TCP server", type: "TcpServerModule", fieldbus: false },
                { tag: "serial port", type: "SerialModule", fieldbus: false },
                { tag: "PROFINET", type: "ProfinetModule", fieldbus: true },
                { tag: "EtherNet/IP", type: "EipModule", fieldbus: true }
            ]
        }
        function test_selectingADeviceBuildsItsControls(data) {
            var ids = openPage([{ type: "TcpServerModule", name: "first" }, { type: data.type, name: "second" }], true)
            view.currentDeviceID = ids[1]
            var grid = panelChild("paramGrid")
            var single = panelChild("singleColumn")
            var items = DevicesManager.getCurrentDeviceItems(ids[1])
            var gridItems = [], singleItems = []
            for (var i = 0; i < items.length; ++i) {
                if (!items[i])
                    continue
                var wide = items[i].qmlName === "ReadOnlyText.qml" || items[i].qmlName === "AddressDataSet.qml"
                ;(wide ? singleItems : gridItems).push(items[i])
            }
            compare(grid.children.length, gridItems.length)
            compare(single.children.length, singleItems.length)
            for (var g = 0; g < gridItems.length; ++g) {
                var cell = grid.children[g]
                compare(cell.pItemData, gridItems[g].data, "grid follows the item order")
                compare([cell.width, cell.height], [340, 30])
                compare(cell.visible, gridItems[g].data.visibility)
                if (cell.leftMargin !== undefined)
                    compare([cell.leftMargin, cell.controlSpace], [10, 160])
            }
            // Two columns: every even cell starts a row.
            if (gridItems.length > 1 && grid.children[1].visible && grid.children[0].visible)
                compare(grid.children[1].y, grid.children[0].y)
            for (var s = 0; s < singleItems.length; ++s) {
                var address = singleItems[s].qmlName === "AddressDataSet.qml"
                compare([single.children[s].width, single.children[s].height], address ? [730, 500] : [340, 30])
            }
            compare(panelChild("sendPanel").visible, !data.fieldbus)
            verify(panelChild("recvPanel").visible)
        }

        // The switch follows every connectStateChanged, so a refused start springs back.
        function test_connectSwitch_data() {
            return [
                { tag: "accepted start", refuse: false, state: true, boxes: 0 },
                { tag: "refused start springs back", refuse: true, state: false, boxes: 1 }
            ]
        }
        function test_connectSwitch(data) {
            var ids = openPage([{ type: "TcpServerModule", name: "srv" }])
            if (data.refuse)
                TestGateway.answerKey("SetModuleParam", "ConnectState", 0xE00000FF)
            var opened = boxSpy()
            var sw = findChild(rowOf(0), "connectSwitch")
            compare(sw.switchStatus, false)
            mouseClick(sw)
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(device(ids[0]).connectState, data.state)
            compare(sw.switchStatus, data.state)
            compare(opened.count, data.boxes)
            if (data.boxes > 0)
                compare(view.messageBoxes.lastBox.iconSource, "qrc:/Images/error.png")
        }

        function test_messageBoxIcon_data() {
            return [
                { tag: "ask", type: 0, icon: "ask.png", yesNo: true },
                { tag: "warning", type: 1, icon: "warning.png", yesNo: false },
                { tag: "error", type: 2, icon: "error.png", yesNo: false },
                { tag: "success", type: 3, icon: "ok.png", yesNo: false },
                { tag: "information", type: 4, icon: "default.png", yesNo: false }
            ]
        }
        function test_messageBoxIcon(data) {
            openPage([])
            DevicesManager.messageBox(data.type, "text of the box")
            var box = view.messageBoxes.lastBox
            verify(box !== null)
            compare(box.msgText, "text of the box")
            compare(findChild(box.contentItem, "msgIcon").source, "qrc:/Images/" + data.icon)
            compare(findChild(box.contentItem, "msgYes").visible, data.yesNo)
            compare(findChild(box.contentItem, "msgNo").visible, data.yesNo)
            compare(findChild(box.contentItem, "msgConfirm").visible, !data.yesNo)
            compare([box.width, box.height], [290, 155])
            var answered = createTemporaryObject(spy, page, { target: box, signalName: "accepted" })
            mouseClick(findChild(box.contentItem, data.yesNo ? "msgYes" : "msgConfirm"))
            compare(answered.count, 1)
            tryCompare(view.messageBoxes, "lastBox", null)
            compare(view.messageBoxes.openBoxes.length, 0)
        }

        function test_itemMessageOpensABox() {
            openPage([{ type: "TcpServerModule", name: "srv" }], true)
            TestGateway.answer("SetModuleParam", 0xE00000FF)
            var opened = boxSpy()
            var grid = panelChild("paramGrid")
            for (var i = 0; i < grid.children.length; ++i) {
                if (grid.children[i].pItemData.objectName === "MaxConnections") {
                    var input = findChild(grid.children[i], "rangeInput")
                    input.forceActiveFocus()
                    input.selectAll()
                    keyClick("9")
                    keyClick(Qt.Key_Return)
                }
            }
            compare(opened.count, 1)
            compare(view.messageBoxes.lastBox.msgType, 2)
        }

        function test_hexSendRewritesTheField() {
            openPage([{ type: "TcpServerModule", name: "srv" }], true)
            var field = panelChild("sendField")
            var hex = panelChild("hexSendCheck")
            var sendData = DevicesManager.sendDataNormalDevice
            field.text = "AB"
            compare(sendData.text, "AB")
            mouseClick(hex)
            compare(sendData.hexEnable, true)
            compare(field.text, "41 42")
            compare(sendData.text, "41 42")
            field.forceActiveFocus()
            field.cursorPosition = field.text.length
            keyClick("4")
            keyClick(Qt.Key_Return)
            compare(field.text, "41 424", "Return stays out of the field")
            mouseClick(hex)
            compare(sendData.hexEnable, false)
            compare(field.text, "AB")
            compare(sendData.text, "AB")
        }

        function test_sendPanelButtons_data() {
            return [
                { tag: "send on a stopped device asks to switch it on", button: "sendButton", boxes: 1, left: "hello" },
                { tag: "clear empties the field", button: "sendClear", boxes: 0, left: "" }
            ]
        }
        function test_sendPanelButtons(data) {
            openPage([{ type: "TcpServerModule", name: "srv" }], true)
            var opened = boxSpy()
            panelChild("sendField").text = "hello"
            mouseClick(panelChild(data.button))
            compare(TestGateway.callCount("WriteString"), 0)
            compare(opened.count, data.boxes)
            compare(panelChild("sendField").text, data.left)
            compare(DevicesManager.sendDataNormalDevice.text, data.left)
        }

        function test_receivePanel_data() {
            return [
                { tag: "eight entries fit", entries: 8, scrollBar: false },
                { tag: "more than eight entries scroll", entries: 9, scrollBar: true }
            ]
        }
        function test_receivePanel(data) {
            var ids = openPage([{ type: "TcpServerModule", name: "srv" }], true)
            var text = []
            for (var i = 0; i < data.entries; ++i)
                text.push("[t] A" + i)
            device(ids[0]).recvDataList = text
            var list = panelChild("recvList")
            tryCompare(list, "count", data.entries)
            compare(list.model[0], text[0])
            compare(panelChild("recvScrollBar").policy === ScrollBar.AlwaysOn, data.scrollBar)
            mouseClick(panelChild("recvClear"))
            tryCompare(list, "count", 0)
            compare(device(ids[0]).recvDataList.length, 0)
        }

        function test_menu_data() {
            return [
                { tag: "delete removes the device", action: "menuDelete" },
                { tag: "rename asks for the name", action: "menuRename" }
            ]
        }
        function test_menu(data) {
            var ids = openPage([{ type: "TcpServerModule", name: "one" }, { type: "UdpModule", name: "two" }])
            mouseClick(rowOf(1), 40, 20, Qt.RightButton)
            compare(view.currentDeviceID, ids[1])
            var menu = findChild(view.deviceListView, "deviceMenu")
            tryCompare(menu, "visible", true)
            mouseClick(findChild(menu.contentItem, data.action))
            if (data.action === "menuDelete") {
                compare(TestGateway.callCount("DeleteModule"), 1)
                compare(TestGateway.lastModuleId("DeleteModule"), ids[1])
                tryCompare(findChild(view.deviceListView, "deviceList"), "count", 1)
                compare(view.currentDeviceID, 0, "the selection is the returned code")
                return
            }
            var field = null
            tryVerify(function() { field = findChild(page.Window.contentItem, "renameField"); return field && field.visible })
            compare(field.text, "two")
            field.selectAll()
            keyClick(Qt.Key_Delete)
            keyClick("x")
            keyClick(Qt.Key_Return)
            compare(TestGateway.callCount("UpdateModule"), 1)
            compare(device(ids[1]).deviceName, "x")
            tryCompare(field, "visible", false)
        }
    }
}
