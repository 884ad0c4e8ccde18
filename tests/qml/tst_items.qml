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
        function typeAddress(box, keys) {
            for (var i = 0; i < 4; ++i) {
                var part = findChild(box, "ipPart" + i)
                part.forceActiveFocus()
                part.selectAll()
                keyClick(Qt.Key_Delete)
            }
            findChild(box, "ipPart0").forceActiveFocus()
            for (var k = 0; k < keys.length; ++k)
                keyClick(keys[k])
            keyClick(Qt.Key_Return)
            tryVerify(function() { return TestGateway.callCount("SetModuleParam") > 0 })
        }
        function pick(box, index) {
            mouseClick(box)
            var list = findChild(box, "comboPopup").contentItem
            tryVerify(function() { return list.itemAtIndex(index) !== null })
            mouseClick(list.itemAtIndex(index))
        }

        // One edit per control kind, accepted and refused: the accepted value is
        // stored and shown; a refused one leaves the gateway's value, shows it
        // again and opens one message box.
        function test_edit_data() {
            var kinds = [
                { tag: "Integer", type: "TcpServerModule", key: "LocalPort", stored: "8000", written: "9000",
                  control: "integerBox", prop: "currentValue", model: "currentValue", input: "rangeInput",
                  before: 8000, after: 9000, edit: function(box) { typeInto(findChild(box, "rangeInput"), "9000") } },
                { tag: "Integer above the maximum, clamped", type: "TcpServerModule", key: "LocalPort", stored: "8000",
                  written: "65535", control: "integerBox", prop: "currentValue", model: "currentValue", input: "rangeInput",
                  before: 8000, after: 65535, edit: function(box) { typeInto(findChild(box, "rangeInput"), "70000") } },
                { tag: "IPString target", type: "TcpClientModule", key: "TargetIP", stored: "10.0.0.2", written: "192.168.1.7",
                  control: "targetIpBox", hidden: "hostIpBox", prop: "currentIPString", model: "ipString",
                  before: "10.0.0.2", after: "192.168.1.7", edit: function(box) { typeAddress(box, "192.168.1.7") } },
                { tag: "EndChar", type: "TcpServerModule", key: "EndChar", stored: "\r\n", written: "#",
                  control: "endCharBox", prop: "currentText", model: "curValue", input: "subscriptionInput",
                  before: "\\r\\n", after: "#", edit: function(box) { typeInto(findChild(box, "subscriptionInput"), "#") } },
                { tag: "Boolean", type: "TcpClientModule", key: "AutoReconnect", stored: "true", written: "false",
                  control: "booleanSwitch", prop: "switchStatus", model: "curValue",
                  before: true, after: false, edit: function(sw) { mouseClick(sw) } },
                { tag: "Enumeration", type: "SerialModule", key: "Parity", stored: "0", written: "3",
                  control: "enumBox", prop: "currentIndex", model: "curIndex",
                  before: 0, after: 2, edit: function(box) { pick(box, 2) } }
            ]
            var rows = []
            for (var i = 0; i < kinds.length; ++i) {
                rows.push(Object.assign({}, kinds[i], { tag: kinds[i].tag + " accepted", refused: false }))
                rows.push(Object.assign({}, kinds[i], { tag: kinds[i].tag + " refused", refused: true }))
            }
            return rows
        }
        function test_edit(data) {
            var params = {}
            params[data.key] = data.stored
            makeDevice(data.type, params)
            var item = control(data.key)
            var box = findChild(item, data.control)
            verify(box.visible)
            if (data.hidden)
                verify(!findChild(item, data.hidden).visible)
            var boxes = createTemporaryObject(spy, page, { target: item.pItemData, signalName: "messageBox" })
            compare(box[data.prop], data.before)
            if (data.refused)
                TestGateway.answer("SetModuleParam", 0xE00000FF)
            data.edit(box)
            var shown = data.refused ? data.before : data.after
            compare(TestGateway.callCount("SetModuleParam"), 1)
            compare(TestGateway.param(deviceId, data.key), data.refused ? data.stored : data.written)
            compare(item.pItemData[data.model], shown)
            compare(box[data.prop], shown)
            if (data.input)
                compare(findChild(box, data.input).text, String(shown))
            compare(boxes.count, data.refused ? 1 : 0)
        }

        function test_integerShowsItsMessageTip() {
            makeDevice("TcpServerModule", {})
            compare(findChild(control("LocalPort"), "messageTipIcon").visible, true)
            compare(findChild(control("MaxConnections"), "messageTipIcon").visible, false)
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

        function test_serialPortListIsAskedWhenItOpens() {
            makeDevice("SerialModule", {})
            var box = findChild(control("PortName"), "comBox")
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
            compare(findChild(heading, "categoryText").text, "Framing")
            heading.pItemData.partLineVisible = true
            verify(findChild(heading, "partLine").visible)
            heading.pItemData.partLineVisible = false
            verify(!findChild(heading, "partLine").visible)
        }
    }
}
