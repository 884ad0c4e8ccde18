import QtQuick 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// Item controls bound to the real item models of a device on the fake
// gateway: edits go through the model's setter, a refused edit shows the
// gateway's value again, disabled items grey out and invisible ones hide.
Item {
    id: page
    width: 800
    height: 600

    Component { id: spy; SignalSpy {} }

    TestCase {
        name: "ItemControls"
        when: windowShown
        property int deviceId: -1

        function makeDevice(type, params) {
            TestGateway.reset()
            deviceId = TestGateway.addModule(type, "dev")
            for (var key in params)
                TestGateway.setParam(deviceId, key, params[key])
            TestGateway.loadDevices()
            TestGateway.clearCalls()
        }
        function proxyNamed(key) {
            var items = DevicesManager.getCurrentDeviceItems(deviceId)
            for (var i = 0; i < items.length; ++i) {
                if (items[i] && items[i].data && items[i].data.objectName === key)
                    return items[i]
            }
            fail("no item " + key)
        }
        function control(key) {
            var proxy = proxyNamed(key)
            var component = Qt.createComponent("qrc:/QmlFiles/" + proxy.qmlName)
            compare(component.status, Component.Ready, component.errorString())
            var made = createTemporaryObject(component, page, { pItemData: proxy.data, x: 20, y: 20 })
            verify(made !== null)
            return made
        }
        function typeInto(input, text) {
            input.forceActiveFocus()
            input.selectAll()
            keyClick(Qt.Key_Delete)
            for (var i = 0; i < text.length; ++i)
                keyClick(text[i])
            keyClick(Qt.Key_Return)
        }
        function refuseWrites(refuse) {
            if (refuse)
                TestGateway.answer("SetModuleParam", 0xE00000FF)
        }

        function test_integer_data() {
            return [
                { tag: "accepted value is written and kept", typed: "9000", refused: false, shown: 9000, written: "9000", boxes: 0 },
                { tag: "value above the maximum is written clamped", typed: "70000", refused: false, shown: 65535, written: "65535", boxes: 0 },
                { tag: "refused value shows the old one again", typed: "9000", refused: true, shown: 8000, written: "", boxes: 1 }
            ]
        }
        function test_integer(data) {
            makeDevice("TcpServerModule", { LocalPort: "8000" })
            var item = control("LocalPort")
            var boxes = createTemporaryObject(spy, page, { target: item.pItemData, signalName: "messageBox" })
            var box = findChild(item, "integerBox")
            compare(box.currentValue, 8000)
            refuseWrites(data.refused)
            typeInto(findChild(box, "rangeInput"), data.typed)
            compare(TestGateway.callCount("SetModuleParam"), 1)
            if (data.written.length > 0)
                compare(TestGateway.setCount(deviceId, "LocalPort", data.written), 1)
            compare(item.pItemData.currentValue, data.shown)
            compare(box.currentValue, data.shown)
            compare(findChild(box, "rangeInput").text, String(data.shown))
            compare(boxes.count, data.boxes)
        }

        function test_integerShowsItsMessageTip() {
            makeDevice("TcpServerModule", {})
            compare(findChild(control("LocalPort"), "messageTipIcon").visible, true)
            compare(findChild(control("MaxConnections"), "messageTipIcon").visible, false)
        }

        function test_targetAddress_data() {
            return [
                { tag: "accepted address", keys: "192.168.1.7", refused: false, shown: "192.168.1.7" },
                { tag: "refused address shows the old one", keys: "192.168.1.7", refused: true, shown: "10.0.0.2" }
            ]
        }
        function test_targetAddress(data) {
            makeDevice("TcpClientModule", { TargetIP: "10.0.0.2" })
            var item = control("TargetIP")
            var box = findChild(item, "targetIpBox")
            verify(box.visible)
            verify(!findChild(item, "hostIpBox").visible)
            compare(box.currentIPString, "10.0.0.2")
            refuseWrites(data.refused)
            for (var i = 0; i < 4; ++i) {
                var part = findChild(box, "ipPart" + i)
                part.forceActiveFocus()
                part.selectAll()
                keyClick(Qt.Key_Delete)
            }
            findChild(box, "ipPart0").forceActiveFocus()
            for (var k = 0; k < data.keys.length; ++k)
                keyClick(data.keys[k])
            keyClick(Qt.Key_Return)
            tryCompare(box, "currentIPString", data.shown)
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(item.pItemData.ipString, data.shown)
        }

        function test_hostAddressOffersTheLocalList() {
            makeDevice("TcpServerModule", {})
            var item = control("LocalIP")
            var box = findChild(item, "hostIpBox")
            verify(box.visible)
            verify(!findChild(item, "targetIpBox").visible)
            compare(box.comboBoxListModel, item.pItemData.ipList)
            verify(box.comboBoxListModel.length > 0)
        }

        function test_endChar_data() {
            return [
                { tag: "accepted text", refused: false, shown: "#" },
                { tag: "refused text shows the old one", refused: true, shown: "\\r\\n" }
            ]
        }
        function test_endChar(data) {
            makeDevice("TcpServerModule", { EndChar: "\r\n" })
            var item = control("EndChar")
            var box = findChild(item, "endCharBox")
            compare(box.currentText, "\\r\\n")
            refuseWrites(data.refused)
            typeInto(findChild(box, "subscriptionInput"), "#")
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(box.currentText, data.shown)
            compare(findChild(box, "subscriptionInput").text, data.shown)
        }

        function test_boolean_data() {
            return [
                { tag: "accepted switch", refused: false, shown: false },
                { tag: "refused switch springs back", refused: true, shown: true }
            ]
        }
        function test_boolean(data) {
            makeDevice("TcpClientModule", { AutoReconnect: "true" })
            var item = control("AutoReconnect")
            var sw = findChild(item, "booleanSwitch")
            compare(sw.switchStatus, true)
            refuseWrites(data.refused)
            mouseClick(sw)
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(item.pItemData.curValue, data.shown)
            compare(sw.switchStatus, data.shown)
        }

        function test_enumeration_data() {
            return [
                { tag: "accepted choice", refused: false, pick: 2, shown: 2 },
                { tag: "refused choice shows the old one", refused: true, pick: 2, shown: 0 }
            ]
        }
        function test_enumeration(data) {
            makeDevice("SerialModule", {})
            var item = control("Parity")
            var box = findChild(item, "enumBox")
            item.pItemData.curIndex = 0
            compare(box.currentIndex, 0)
            TestGateway.clearCalls()
            refuseWrites(data.refused)
            mouseClick(box)
            var list = findChild(box, "comboPopup").contentItem
            tryVerify(function() { return list.itemAtIndex(data.pick) !== null })
            mouseClick(list.itemAtIndex(data.pick))
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(item.pItemData.curIndex, data.shown)
            compare(box.currentIndex, data.shown)
        }

        function test_serialPortListIsAskedWhenItOpens() {
            makeDevice("SerialModule", {})
            var item = control("PortName")
            var box = findChild(item, "comBox")
            var before = TestGateway.callCount("GetSerialList")
            mouseClick(box)
            compare(TestGateway.callCount("GetSerialList"), before + 1)
        }

        function test_enableAndVisibility_data() {
            return [
                { tag: "Integer", type: "TcpServerModule", key: "LocalPort" },
                { tag: "IPString", type: "TcpServerModule", key: "LocalIP" },
                { tag: "EndChar", type: "TcpServerModule", key: "EndChar" },
                { tag: "Boolean", type: "TcpClientModule", key: "AutoReconnect" },
                { tag: "Enumeration", type: "SerialModule", key: "Parity" },
                { tag: "EnumEntryCOM", type: "SerialModule", key: "PortName" },
                { tag: "ReadOnlyText", type: "ProfinetModule", key: "StationName" }
            ]
        }
        function test_enableAndVisibility(data) {
            makeDevice(data.type, {})
            var item = control(data.key)
            verify(item.enabled)
            verify(item.visible)
            item.pItemData.enable = false
            verify(!item.enabled)
            item.pItemData.enable = true
            verify(item.enabled)
            item.pItemData.visibility = false
            verify(!item.visible)
        }

        function test_categoryShowsItsHeadingAndPartLine() {
            makeDevice("TcpServerModule", {})
            var items = DevicesManager.getCurrentDeviceItems(deviceId)
            var heading = null
            for (var i = 0; i < items.length && !heading; ++i) {
                if (items[i] && items[i].qmlName === "Category.qml")
                    heading = createTemporaryObject(Qt.createComponent("qrc:/QmlFiles/Category.qml"), page,
                                                    { pItemData: items[i].data })
            }
            verify(heading !== null)
            compare(findChild(heading, "categoryText").text, "This Host")
            heading.pItemData.partLineVisible = true
            verify(findChild(heading, "partLine").visible)
            heading.pItemData.partLineVisible = false
            verify(!findChild(heading, "partLine").visible)
        }
    }
}
