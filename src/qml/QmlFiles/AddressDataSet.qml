import QtQuick 2.15
import comm.devicesManager 1.0
import lm.cpp.AddressDataSet 1.0

// Address table of one direction of a PROFINET or EtherNet/IP device, with
// its buttons: add, clear all, read every address's data and, for write
// addresses, the send test. The model checks and writes; its messages reach
// the page through the parameter panel.
Rectangle {
    id: root
    property var pItemData: null
    readonly property bool isProfinet: pItemData ? pItemData.moduType === AddressDataSetData.Profinet : true
    readonly property bool isWrite: pItemData ? pItemData.addressType === AddressDataSetData.WriteAddress : false
    readonly property var addresses: pItemData && pItemData.addressList ? pItemData.addressList : []
    property alias table: table
    property alias addLoader: addLoader
    property alias sendLoader: sendLoader
    property alias askBoxes: askLauncher

    width: 730
    height: 500
    visible: pItemData ? pItemData.visibility : true
    color: Theme.surface
    border.color: Theme.frame
    radius: 3

    function reactivateMainWindow() {
        if (typeof MainWindow !== "undefined" && MainWindow)
            MainWindow.requestActivate()
    }
    function openAddDialog() {
        addLoader.active = true
    }
    function clearAll() {
        askLauncher.open(0, DevicesManager.qsLMTr("Lang_ClearAllAddress"),
                         function() { root.pItemData.clearAllCustomAddress() })
    }
    function addAddress(info) {
        if (!pItemData.gwValidateAddressParams(info))
            return
        if (pItemData.checkValidAddress(info.SoftElementAddress, info.SoftElementNum) !== "")
            return
        if (pItemData.addCustomAddress(info))
            addLoader.active = false
    }
    function changeAddress(addr, info) {
        if (pItemData.checkValidAddress(info.SoftElementAddress, info.SoftElementNum, addr) !== "")
            return
        if (pItemData.changeCustomAddress(addr, info))
            table.editLoader.active = false
    }

    MessageBoxLauncher { id: askLauncher }

    LmText {
        objectName: "addressTitle"
        x: 12
        y: 10
        font.pixelSize: Theme.fontHeading
        font.bold: true
        text: root.pItemData ? root.pItemData.displayName : ""
    }
    LmText {
        objectName: "addressSummary"
        x: 12
        y: 32
        color: Theme.textSecondary
        font.pixelSize: Theme.fontCaption
        text: DevicesManager.qsLMTr("Lang_CreatCount") + ": " + root.addresses.length
              + (root.pItemData && root.pItemData.softAddressMax > root.pItemData.softAddressMin
                 ? "    " + DevicesManager.qsLMTr("Lang_AddressSpace") + ": " + root.pItemData.softAddressMin
                   + "-" + root.pItemData.softAddressMax : "")
    }
    Row {
        anchors { right: parent.right; top: parent.top; margins: 10 }
        spacing: 8
        LmButton {
            objectName: "syncButton"
            primary: false
            text: DevicesManager.qsLMTr("Lang_DataSyn")
            onClicked: root.pItemData.synchrodata()
        }
        LmButton {
            objectName: "sendTestButton"
            visible: root.isWrite
            primary: false
            text: DevicesManager.qsLMTr("Lang_SendTest")
            onClicked: sendLoader.active = true
        }
        LmButton {
            objectName: "clearAllButton"
            primary: false
            enabled: root.addresses.length > 0
            text: DevicesManager.qsLMTr("Clear")
            onClicked: root.clearAll()
        }
        LmButton {
            objectName: "addAddressButton"
            text: DevicesManager.qsLMTr("Lang_AddressAdd")
            onClicked: root.openAddDialog()
        }
    }
    AddressTableView {
        id: table
        objectName: "addressTable"
        anchors { left: parent.left; right: parent.right; top: parent.top; bottom: parent.bottom
                  topMargin: 54; leftMargin: 10; rightMargin: 10; bottomMargin: 10 }
        addresses: root.addresses
        isProfinet: root.isProfinet
        minAddress: root.pItemData && root.pItemData.softAddressMin ? root.pItemData.softAddressMin : 0
        maxAddress: root.pItemData && root.pItemData.softAddressMax ? root.pItemData.softAddressMax : 0
        onDelAddress: root.pItemData.delCustomAddress(seq)
        onChangeAddress: root.changeAddress(addr, info)
    }

    // The add dialog: defaults from the address description file, then the
    // gateway's first-address range; unloaded when it closes.
    Loader {
        id: addLoader
        active: false
        sourceComponent: AddAddressDlg {
            isProfinet: root.isProfinet
            onCreateAddress: root.addAddress(addressInfo)
            onClosed: {
                addLoader.active = false
                root.reactivateMainWindow()
            }
        }
        onLoaded: {
            var data = root.pItemData
            data.loadAdressAlgorithmTabXML(root.isProfinet ? "ProfinetModule" : "EipModule")
            if (data.addressInfoDefault)
                item.startFrom(data.addressInfoDefault)
            data.gwGetAddressConstraints()
            item.setRange(data.softAddressMin, data.softAddressMax, data.softAddressDefault)
            item.open()
        }
    }
    Loader {
        id: sendLoader
        active: false
        sourceComponent: PNSendTestDlg {
            pItemData: root.pItemData
            onClosed: {
                sendLoader.active = false
                root.reactivateMainWindow()
            }
        }
        onLoaded: item.open()
    }
}
