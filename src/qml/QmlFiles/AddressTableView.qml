import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// Table of the addresses of one direction: address, start and length, the
// last data and a delete button. Clicking a row edits the address in the
// address dialog; clicking its data opens the message record. The table
// changes nothing itself: it reports delAddress(seq) (after asking) and
// changeAddress(addr, info).
Rectangle {
    id: root
    property var addresses: []
    property bool isProfinet: true
    property int minAddress: 0
    property int maxAddress: 0
    readonly property var columnWidths: [220, 120, 0, 56] // the data column takes the rest
    readonly property int dataWidth: Math.max(80, width - 2 - columnWidths[0] - columnWidths[1] - columnWidths[3])
    property alias editLoader: editLoader
    property alias recordLoader: recordLoader
    property alias askBoxes: askLauncher
    signal delAddress(int seq)
    signal changeAddress(var addr, var info)

    color: Theme.surface
    border.color: Theme.frame
    radius: 3

    function askDelete(seq) {
        askLauncher.open(0, DevicesManager.qsLMTr("Lang_queDelAddress"), function() { root.delAddress(seq) })
    }
    function edit(addr) {
        editLoader.address = addr
        editLoader.active = true
    }
    function showRecord(addr) {
        recordLoader.address = addr
        recordLoader.active = true
    }

    MessageBoxLauncher { id: askLauncher }

    Rectangle {
        id: header
        objectName: "addressTableHeader"
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 1 }
        height: 32
        color: Theme.page
        Row {
            anchors.fill: parent
            Repeater {
                model: [DevicesManager.qsLMTr("Lang_Address"), DevicesManager.qsLMTr("位置-长度"),
                        DevicesManager.qsLMTr("Data"), ""]
                delegate: LmText {
                    width: index === 2 ? root.dataWidth : root.columnWidths[index]
                    height: header.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    color: Theme.textSecondary
                    text: modelData
                }
            }
        }
    }
    ListView {
        id: list
        objectName: "addressList"
        anchors { left: parent.left; right: parent.right; top: header.bottom; bottom: parent.bottom; margins: 1 }
        clip: true
        model: root.addresses
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}
        delegate: Rectangle {
            id: row
            objectName: "addressRow"
            readonly property var address: modelData
            width: list.width
            height: 34
            color: rowArea.containsMouse ? Theme.rowHover : Theme.surface
            MouseArea {
                id: rowArea
                objectName: "addressRowArea"
                anchors.fill: parent
                hoverEnabled: true
                onClicked: root.edit(row.address)
            }
            Row {
                anchors.fill: parent
                LmText {
                    objectName: "addressCell"
                    width: root.columnWidths[0]
                    height: row.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    text: row.address ? row.address.serialNumber + " " + row.address.addrName : ""
                }
                LmText {
                    objectName: "rangeCell"
                    width: root.columnWidths[1]
                    height: row.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    text: row.address ? row.address.firstAddr + "-" + row.address.addrLength : ""
                }
                LmText {
                    objectName: "dataCell"
                    width: root.dataWidth
                    height: row.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    font.family: Theme.fontMonospace
                    color: dataArea.containsMouse ? Theme.accent : Theme.text
                    text: row.address ? row.address.data : ""
                    MouseArea {
                        id: dataArea
                        objectName: "dataArea"
                        anchors.fill: parent
                        hoverEnabled: true
                        cursorShape: Qt.PointingHandCursor
                        onClicked: root.showRecord(row.address)
                    }
                }
                Item {
                    width: root.columnWidths[3]
                    height: row.height
                    MouseArea {
                        id: deleteArea
                        objectName: "deleteAddress"
                        anchors.centerIn: parent
                        width: 28
                        height: 28
                        hoverEnabled: true
                        onClicked: root.askDelete(row.address.serialNumber)
                        Image {
                            anchors.centerIn: parent
                            source: deleteArea.containsMouse ? "qrc:/Images/ic_delete_click.png"
                                                             : "qrc:/Images/ic_delete_normal.png"
                        }
                    }
                }
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                height: 1
                color: Theme.rowSeparator
            }
        }
    }

    // The address dialog in edit mode, made when needed and unloaded on close.
    Loader {
        id: editLoader
        property var address: null
        active: false
        sourceComponent: AddAddressDlg {
            editing: true
            isProfinet: root.isProfinet
            onCreateAddress: root.changeAddress(editLoader.address, addressInfo)
            onClosed: {
                editLoader.active = false
                if (typeof MainWindow !== "undefined" && MainWindow)
                    MainWindow.requestActivate()
            }
        }
        onLoaded: {
            item.startFrom(address)
            item.setRange(root.minAddress, root.maxAddress, address ? address.firstAddr : 0)
            item.open()
        }
    }
    Loader {
        id: recordLoader
        property var address: null
        active: false
        sourceComponent: PNMessagesDlg {
            address: recordLoader.address
            onClosed: recordLoader.active = false
        }
        onLoaded: item.open()
    }
}
