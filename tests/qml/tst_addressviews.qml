import QtQuick 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// The address views of a fieldbus device on the fake gateway: an address is
// added, edited and deleted through the dialogs, a conflicting range is
// refused before the gateway is asked, and the send test reaches the gateway.
Item {
    id: page
    width: 1033
    height: 648

    Component { id: managementView; DeviceManagementView { width: 1033; height: 648 } }
    Component { id: spy; SignalSpy {} }

    TestCase {
        name: "AddressViews"
        when: windowShown
        property var view: null
        property int moduleId: 0

        function init() {
            TestGateway.reset()
        }
        function cleanup() {
            if (view)
                view.messageBoxes.closeAll()
            view = null
        }
        function openDevice(type) {
            moduleId = TestGateway.addModule(type, "plc")
            TestGateway.setParam(moduleId, "ConnectState", "true")
            TestGateway.setParam(moduleId, "ReadAddressConstraints", "0;0;1439;0")
            TestGateway.setParam(moduleId, "WriteAddressConstraints", "0;0;1439;0")
            TestGateway.loadDevices()
            TestGateway.clearCalls()
            view = createTemporaryObject(managementView, page)
            view.currentDeviceID = moduleId
        }
        // The address view of one direction: 0 read, 1 write.
        function table(index) {
            var single = findChild(view.paramsView, "singleColumn")
            var views = []
            for (var i = 0; i < single.children.length; ++i)
                if (single.children[i].addLoader !== undefined)
                    views.push(single.children[i])
            compare(views.length, 2)
            return views[index]
        }
        // The views lie below the fold of the parameter panel: their buttons
        // are pressed through their signals, the dialogs' by the mouse.
        function press(item) {
            verify(item !== null)
            item.clicked()
        }
        function openAdd(addressView) {
            press(findChild(addressView, "addAddressButton"))
            tryVerify(function() { return addressView.addLoader.item !== null && addressView.addLoader.item.opened })
            return addressView.addLoader.item
        }
        function fill(dialog, name, first, points) {
            dialog.addressName = name
            dialog.firstAddress = first
            dialog.points = points
        }
        function rows(addressView) {
            var list = findChild(addressView.table, "addressList")
            return list.count
        }
        function boxSpy() { return createTemporaryObject(spy, page, { target: view.messageBoxes, signalName: "opened" }) }

        function test_addEditDelete_data() {
            return [
                { tag: "PROFINET", type: "ProfinetModule", types: 3 },
                { tag: "EtherNet/IP", type: "EipModule", types: 2 }
            ]
        }
        function test_addEditDelete(data) {
            openDevice(data.type)
            var readView = table(0)
            var dialog = openAdd(readView)
            compare(dialog.intTypes.length, data.types)
            compare(dialog.firstAddress, 100, "the description file's default lies inside the range")
            compare(dialog.timeout, 1000)
            compare(dialog.addressName, "Address")
            compare(dialog.pollEnable, true)
            fill(dialog, "camera", 20, 4)
            dialog.uploadEnable = true
            mouseClick(findChild(dialog, "addressConfirm"))
            compare(TestGateway.callCount("ValidateAddressParams"), 1)
            compare(TestGateway.callCount("AddModuleAddressPN"), 1)
            compare(TestGateway.addressCount(moduleId), 1)
            compare(TestGateway.addressParam(moduleId, 1, "SoftElementNum"), "4")
            compare(TestGateway.addressParam(moduleId, 1, "Upload"), "true")
            tryCompare(readView.addLoader, "active", false)
            tryCompare(findChild(readView.table, "addressList"), "count", 1)

            // Edit: a click on the row opens the dialog on that address.
            var list = findChild(readView.table, "addressList")
            tryVerify(function() { return list.itemAtIndex(0) !== null })
            compare(findChild(list.itemAtIndex(0), "addressCell").text, "1 camera")
            findChild(list.itemAtIndex(0), "addressRowArea").clicked(null)
            tryVerify(function() { return readView.table.editLoader.item !== null && readView.table.editLoader.item.opened })
            var edit = readView.table.editLoader.item
            compare([edit.addressName, edit.firstAddress, edit.points], ["camera", 20, 4])
            edit.points = 2
            mouseClick(findChild(edit, "addressConfirm"))
            compare(TestGateway.addressParam(moduleId, 1, "SoftElementNum"), "2")
            tryCompare(readView.table.editLoader, "active", false)
            tryCompare(findChild(list.itemAtIndex(0), "rangeCell"), "text", "20-2")

            // Delete: asked first, then gone from the gateway and the table.
            findChild(list.itemAtIndex(0), "deleteAddress").clicked(null)
            var ask = readView.table.askBoxes.lastBox
            verify(ask !== null)
            compare(ask.msgText, "Delete this address?")
            ask.finish(true)
            compare(TestGateway.callCount("DeleteModuleAddress"), 1)
            compare(TestGateway.addressCount(moduleId), 0)
            tryCompare(list, "count", 0)
        }

        function test_conflictingRange_refusedBeforeTheGateway_data() {
            return [
                { tag: "PROFINET: 14 is free after 10 x4", type: "ProfinetModule", first: 14, added: 2 },
                { tag: "EtherNet/IP: 14 is inside 10 x4", type: "EipModule", first: 14, added: 1 }
            ]
        }
        function test_conflictingRange_refusedBeforeTheGateway(data) {
            openDevice(data.type)
            var readView = table(0)
            var dialog = openAdd(readView)
            fill(dialog, "first", 10, 4)
            mouseClick(findChild(dialog, "addressConfirm"))
            dialog = openAdd(readView)
            fill(dialog, "second", data.first, 1)
            var opened = boxSpy()
            mouseClick(findChild(dialog, "addressConfirm"))
            compare(TestGateway.callCount("AddModuleAddressPN"), data.added)
            if (data.added === 1) {
                compare(opened.count, 1)
                compare(view.messageBoxes.lastBox.msgText, "Address 1 first overlaps an existing address")
                verify(readView.addLoader.active, "the dialog stays open for a correction")
            }
        }

        function test_sendTest_onlyOnWriteTable() {
            openDevice("ProfinetModule")
            verify(!findChild(table(0), "sendTestButton").visible)
            var writeView = table(1)
            var dialog = openAdd(writeView)
            fill(dialog, "result", 0, 2)
            mouseClick(findChild(dialog, "addressConfirm"))
            compare(TestGateway.addressCount(moduleId), 1)
            press(findChild(writeView, "sendTestButton"))
            tryVerify(function() { return writeView.sendLoader.item !== null && writeView.sendLoader.item.opened })
            var send = writeView.sendLoader.item
            send.content = "1;2"
            var opened = boxSpy()
            mouseClick(findChild(send, "sendButton"))
            compare(TestGateway.callCount("WriteInt"), 1)
            compare(opened.count, 1)
            compare(view.messageBoxes.lastBox.msgText, "Sent")
        }
    }
}
