import QtQuick 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// Texts that come from operators, description files and peers are drawn as
// typed: markup in them is neither applied ("<b>" bold) nor swallowed
// ("<tag>" gone). Each place is compared with the same text drawn as plain
// text in the same font.
Item {
    id: page
    width: 1033
    height: 648

    readonly property string marked: "<b>B</b>RED <tag>x"

    Component { id: managementView; DeviceManagementView { width: 1033; height: 648 } }
    Component { id: literal; Text { textFormat: Text.PlainText } }
    // Stands in for an item model: the item controls read only these.
    Component {
        id: itemModel
        QtObject {
            property string objectName: "item"
            property string displayName
            property string description
            property string curValue
            property bool visibility: true
            property bool enable: true
            property bool partLineVisible: true
        }
    }
    Component { id: itemRow; ItemRow {} }
    Component { id: heading; Category {} }
    Component { id: readOnly; ReadOnlyText {} }
    Component { id: addressTable; AddressDataSet {} }
    Component { id: dropDown; LmComboBox { width: 300; currentIndex: 0 } }

    TestCase {
        name: "PlainText"
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
        function openPage(name) {
            var id = TestGateway.addModule("TcpServerModule", name)
            TestGateway.loadDevices()
            view = createTemporaryObject(managementView, page)
            view.currentDeviceID = id
            return DevicesManager.getDeviceById(id)
        }
        function model(props) { return createTemporaryObject(itemModel, page, props) }
        function hovered(item, tipName) {
            var tip = findChild(item, tipName)
            mouseMove(tip.parent, 5, 5)
            tryCompare(tip, "visible", true)
            return tip.contentItem
        }

        function test_shownAsTyped_data() {
            return [
                { tag: "device name in the list", show: function(text) {
                    openPage(text)
                    var list = findChild(view.deviceListView, "deviceList")
                    tryVerify(function() { return list.itemAtIndex(0) !== null })
                    return findChild(list.itemAtIndex(0), "deviceName")
                } },
                { tag: "received line", show: function(text) {
                    openPage("dev").recvDataList = [text]
                    var list = findChild(view.paramsView, "recvList")
                    tryVerify(function() { return list.itemAtIndex(0) !== null })
                    return list.itemAtIndex(0)
                } },
                { tag: "message box", show: function(text) {
                    openPage("dev")
                    DevicesManager.messageBox(2, text)
                    return findChild(view.messageBoxes.lastBox.contentItem, "msgText")
                } },
                { tag: "item name", show: function(text) {
                    return findChild(createTemporaryObject(itemRow, page, { pItemData: model({ displayName: text }) }),
                                     "itemLabel")
                } },
                { tag: "item description", show: function(text) {
                    var row = createTemporaryObject(itemRow, page, { pItemData: model({ displayName: "n", description: text }) })
                    return hovered(row, "labelToolTip")
                } },
                { tag: "item message tip", show: function(text) {
                    var row = createTemporaryObject(itemRow, page, { pItemData: model({}), hasMessageTip: true,
                                                                     messageTip: text })
                    return hovered(row, "messageToolTip")
                } },
                { tag: "heading", show: function(text) {
                    return findChild(createTemporaryObject(heading, page, { pItemData: model({ displayName: text }) }),
                                     "categoryText")
                } },
                { tag: "read-only value", show: function(text) {
                    return findChild(createTemporaryObject(readOnly, page, { pItemData: model({ curValue: text }) }),
                                     "readOnlyValue")
                } },
                { tag: "address table title", show: function(text) {
                    return findChild(createTemporaryObject(addressTable, page, { pItemData: model({ displayName: text }) }),
                                     "addressTitle")
                } },
                { tag: "drop-down entry", show: function(text) {
                    return findChild(createTemporaryObject(dropDown, page, { comboBoxListModel: [text] }), "comboText")
                } }
            ]
        }
        function test_shownAsTyped(data) {
            var shown = data.show(page.marked)
            verify(shown !== null)
            compare(shown.text, page.marked)
            var typed = createTemporaryObject(literal, page, { text: page.marked, font: shown.font })
            compare(shown.implicitWidth, typed.implicitWidth)
        }
    }
}
