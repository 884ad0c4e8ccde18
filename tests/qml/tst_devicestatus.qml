import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// A device's state beside its switch, the status strip with the counters and
// the peer table of a TCP server, on the fake gateway.
Item {
    id: page
    width: 1033
    height: 648

    Component { id: managementView; DeviceManagementView { width: 1033; height: 648 } }

    TestCase {
        name: "DeviceStatus"
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
        function openPage(type, params) {
            var id = TestGateway.addModule(type, "dev")
            for (var key in params)
                TestGateway.setParam(id, key, params[key])
            TestGateway.loadDevices()
            TestGateway.clearCalls()
            view = createTemporaryObject(managementView, page)
            verify(view !== null)
            view.currentDeviceID = id
            return id
        }
        function rowStatus() {
            var list = findChild(view.deviceListView, "deviceList")
            tryVerify(function() { return list.itemAtIndex(0) !== null })
            return findChild(list.itemAtIndex(0), "deviceStatus")
        }
        function panelChild(name) { return findChild(view.paramsView, name) }

        // Each state pushed by the gateway shows its word and colour beside
        // the switch, with the detail as tool tip; the switch is not touched.
        function test_statusRow_data() {
            return [
                { tag: "connected", state: 2, word: "Connected", colour: Theme.statusOk },
                { tag: "listening", state: 3, word: "Listening", colour: Theme.statusOk },
                { tag: "reconnecting", state: 4, word: "Reconnecting", colour: Theme.statusPending },
                { tag: "port missing", state: 5, word: "Port missing", colour: Theme.statusFault },
                { tag: "error", state: 6, word: "Error", colour: Theme.statusFault },
                { tag: "closed", state: 0, word: "Off", colour: Theme.statusOff }
            ]
        }
        function test_statusRow(data) {
            var id = openPage("TcpClientModule", { "Status": "Opening" })
            var label = rowStatus()
            compare(findChild(label, "statusWord").text, "Opening")
            TestGateway.setParam(id, "StatusDetail", "127.0.0.1:8000, attempt 3 failed")
            TestGateway.pushStatus(id, data.state)
            compare(findChild(label, "statusWord").text, data.word)
            compare(findChild(label, "statusDot").color, data.colour)
            compare(label.detail, "127.0.0.1:8000, attempt 3 failed")
            mouseMove(page, page.width - 2, page.height - 2)
            wait(50) // the row lays out the new word; the label's place follows it
            mouseMove(label, 4, 4)
            tryCompare(findChild(label, "statusTip"), "visible", true)
            compare(findChild(label, "statusTip").text, "127.0.0.1:8000, attempt 3 failed")
            compare(findChild(findChild(view.deviceListView, "deviceList").itemAtIndex(0), "connectSwitch").switchStatus,
                    false)
        }

        // The strip shows the counters read while it is shown; reset writes
        // the request and shows the counters read again.
        function test_strip_countersAndReset() {
            var id = openPage("SerialModule", { "Counters": "RxBytes=11;TxBytes=5;RxFrames=2;TxFrames=1;Dropped=0;"
                                                            + "Errors=3;Reconnects=1;Since=2026-05-04T10:00:00" })
            var strip = panelChild("statusStrip")
            verify(strip.visible)
            tryCompare(findChild(strip, "counter_RxBytes"), "text", "Received 11")
            compare(findChild(strip, "counter_Errors").text, "Errors 3")
            verify(!panelChild("peerTable").visible)
            TestGateway.setParam(id, "Counters", "RxBytes=0;Errors=0")
            mouseClick(findChild(strip, "resetCounters"))
            compare(TestGateway.param(id, "ResetCounters"), "true")
            compare(findChild(strip, "counter_RxBytes").text, "Received 0")
            compare(findChild(strip, "counter_Reconnects").text, "Reconnects -")
        }

        function test_strip_hiddenForFieldbusDevices() {
            openPage("ProfinetModule", {})
            verify(!panelChild("statusStrip").visible)
            wait(50)
            compare(TestGateway.callCount("GetModuleParam"), 0) // no counters asked for
        }

        // A TCP server lists its peers; "Drop" asks the gateway to drop that
        // peer and the table shows what the gateway reports next.
        function test_peerTable_data() {
            return [
                { tag: "two peers", peers: "127.0.0.1:5000;2026-05-04T10:00:00;12;3;2026-05-04T10:01:00\n"
                                           + "10.0.0.2:6000;2026-05-04T10:00:05;0;0;2026-05-04T10:00:05", rows: 2 },
                { tag: "none", peers: "", rows: 0 }
            ]
        }
        function test_peerTable(data) {
            var id = openPage("TcpServerModule", { "Peers": data.peers, "Counters": "RxBytes=12" })
            var table = panelChild("peerTable")
            verify(table.visible)
            var list = findChild(table, "peerList")
            tryCompare(list, "count", data.rows)
            compare(findChild(table, "noPeers").visible, data.rows === 0)
            if (data.rows === 0)
                return
            tryVerify(function() { return list.itemAtIndex(0) !== null })
            var row = list.itemAtIndex(0)
            compare(row.cells[0], "127.0.0.1:5000")
            compare(row.cells[1], "2026-05-04 10:00:00")
            compare(row.cells[2], 12)
            TestGateway.setParam(id, "Peers", "10.0.0.2:6000;2026-05-04T10:00:05;0;0;2026-05-04T10:00:05")
            mouseClick(findChild(row, "dropPeer"))
            compare(TestGateway.param(id, "DropPeer"), "127.0.0.1:5000")
            tryCompare(list, "count", data.rows - 1)
        }

        // The outcome of a send shows under the field: bytes sent, or the
        // translated error in the fault colour.
        function test_sendOutcome_data() {
            return [
                { tag: "sent", code: 0, text: "Sent 8 bytes", failed: false },
                { tag: "no peer", code: 0xE0000014, text: DevicesManager.qsErrTr(0xE0000014), failed: true }
            ]
        }
        function test_sendOutcome(data) {
            var id = openPage("TcpServerModule", { "ConnectState": "true" })
            TestGateway.answer("WriteString", data.code)
            var outcome = panelChild("sendOutcome")
            compare(outcome.text, "")
            mouseClick(panelChild("sendButton"))
            compare(outcome.text, data.text)
            compare(outcome.color, data.failed ? Theme.statusFault : Theme.statusOk)
        }
    }
}
