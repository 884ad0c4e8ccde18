import QtQuick 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// The fixed-bit dialog of a PROFINET device on the fake gateway, opened from
// its parameter button: the bits of both fixed addresses as the gateway's
// bytes give them, data sync, the poll switches and the heartbeat interval,
// accepted and refused.
Item {
    id: page
    width: 1130
    height: 680

    Component { id: spy; SignalSpy {} }

    TestCase {
        name: "FixedbitAddressDlg"
        when: windowShown
        property int deviceId: -1

        function openDialog(readHex, writeHex) {
            TestGateway.reset()
            deviceId = TestGateway.addModule("ProfinetModule", "pn")
            TestGateway.setParam(deviceId, "Heartbeat", "1000")
            TestGateway.setReadData(deviceId, 0, readHex)
            TestGateway.setReadData(deviceId, 1000, writeHex)
            TestGateway.loadDevices()
            var items = DevicesManager.getCurrentDeviceItems(deviceId)
            var proxy = null
            for (var i = 0; i < items.length; ++i)
                if (items[i] && items[i].qmlName === "ProfinetFixedButton.qml")
                    proxy = items[i]
            verify(proxy !== null && proxy.data !== null)
            var row = createTemporaryObject(Qt.createComponent("qrc:/QmlFiles/ProfinetFixedButton.qml"), page,
                                            { pItemData: proxy.data, x: 20, y: 20 })
            verify(row !== null)
            TestGateway.clearCalls()
            mouseClick(findChild(row, "fixedAddressButton"))
            tryVerify(function() { return row.dialog.opened })
            // Centred and laid out (the two sides side by side) before
            // anything in it is clicked.
            tryVerify(function() { return row.dialog.x === (row.dialog.parent.width - row.dialog.width) / 2 })
            tryVerify(function() { return findChild(row.dialog.contentItem, "writeSide").x > 0 })
            tryVerify(function() { return TestGateway.callCount("ReadData") === 2 })
            return row
        }
        function side(row, name) {
            var found = findChild(row.dialog.contentItem, name)
            verify(found !== null, name)
            return found
        }
        // "key=value" of every bit of one side, in table order, with names.
        function bits(row, name) {
            var list = findChild(side(row, name), "fixedBitList")
            var shown = []
            for (var i = 0; i < list.count; ++i) {
                list.positionViewAtIndex(i, ListView.Contain)
                // Rows are made as the list lays itself out.
                tryVerify(function() { return list.itemAtIndex(i) !== null })
                var item = list.itemAtIndex(i)
                shown.push(item.bitName + "=" + item.bitValue)
            }
            return shown
        }

        function test_bitsShowTheAddressBytes_data() {
            return [
                { tag: "trigger and reset from the PLC, ready and heartbeat to it", readHex: "0300", writeHex: "8100",
                  read: ["Trigger=1", "Reset=1", "Job change request=0"], write: ["Ready=1", "Busy=0"],
                  readLast: "PLC heartbeat=0", writeLast: "Heartbeat=1" },
                { tag: "second byte of the read address", readHex: "0002", writeHex: "0000",
                  read: ["Trigger=0", "Reset=0", "Job change request=0"], write: ["Ready=0", "Busy=0"],
                  readLast: "PLC heartbeat=1", writeLast: "Heartbeat=0" },
                { tag: "one byte: the second byte's bits are unknown", readHex: "01", writeHex: "",
                  read: ["Trigger=1", "Reset=0", "Job change request=0"], write: ["Ready=-1", "Busy=-1"],
                  readLast: "PLC heartbeat=-1", writeLast: "Heartbeat=-1" }
            ]
        }
        function test_bitsShowTheAddressBytes(data) {
            var row = openDialog(data.readHex, data.writeHex)
            var read = bits(row, "readSide")
            var write = bits(row, "writeSide")
            compare(read.slice(0, 3), data.read)
            compare(write.slice(0, 2), data.write)
            verify(read.indexOf(data.readLast) >= 0, read.join(", "))
            verify(write.indexOf(data.writeLast) >= 0, write.join(", "))
            compare(read.length, 10)
            compare(write.length, 14)
        }

        function test_dataSyncReadsOneAddress_data() {
            return [ { tag: "read address", name: "readSide", address: 0 },
                     { tag: "write address", name: "writeSide", address: 1000 } ]
        }
        function test_dataSyncReadsOneAddress(data) {
            var row = openDialog("00", "00")
            TestGateway.setReadData(deviceId, data.address, "01")
            TestGateway.clearCalls()
            mouseClick(findChild(side(row, data.name), "dataSyncButton"))
            compare(TestGateway.callCount("ReadData"), 1)
            compare(TestGateway.lastAddressId("ReadData"), data.address)
            compare(bits(row, data.name)[0].split("=")[1], "1")
        }

        function test_pollSwitch_data() {
            return [
                { tag: "read poll accepted", name: "readSide", address: 0, refused: false },
                { tag: "write poll accepted", name: "writeSide", address: 1000, refused: false },
                { tag: "read poll refused", name: "readSide", address: 0, refused: true }
            ]
        }
        function test_pollSwitch(data) {
            var row = openDialog("00", "00")
            var sw = findChild(side(row, data.name), "pollSwitch")
            var before = sw.switchStatus
            var boxes = createTemporaryObject(spy, page, { target: row.pItemData, signalName: "messageBox" })
            if (data.refused)
                TestGateway.answer("SetModuleParam", 0xE0000018)
            mouseClick(sw)
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(TestGateway.lastAddressId("SetModuleParam"), data.address)
            compare(sw.switchStatus, data.refused ? before : !before)
            compare(boxes.count, data.refused ? 1 : 0)
        }

        function test_heartbeat_data() {
            return [ { tag: "accepted", typed: "250", refused: false, shown: 250 },
                     { tag: "refused", typed: "300", refused: true, shown: 1000 } ]
        }
        function test_heartbeat(data) {
            var row = openDialog("00", "00")
            var box = side(row, "heartbeatBox")
            compare(box.currentValue, 1000)
            if (data.refused)
                TestGateway.answer("SetModuleParam", 0xE000000F)
            var input = findChild(box, "rangeInput")
            input.forceActiveFocus()
            input.selectAll()
            keyClick(Qt.Key_Delete)
            for (var i = 0; i < data.typed.length; ++i)
                keyClick(data.typed[i])
            keyClick(Qt.Key_Return)
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(TestGateway.lastAddressId("SetModuleParam"), -1)
            compare(TestGateway.param(deviceId, "Heartbeat"), data.refused ? "1000" : data.typed)
            compare(box.currentValue, data.shown)
            compare(input.text, String(data.shown))
        }
    }
}
