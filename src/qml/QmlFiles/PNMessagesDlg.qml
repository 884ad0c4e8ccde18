import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// Record of the data an address received, newest last, as text or as
// hexadecimal bytes; "Clear" empties the address's history.
DialogFrame {
    id: root
    property var address: null
    property alias shownAsHex: hexSwitch.switchStatus
    readonly property var lines: address ? (shownAsHex ? address.hexDataList : address.dataList) : []

    title: DevicesManager.qsLMTr("Data Record") + (address ? " - " + address.serialNumber + " " + address.addrName : "")
    width: 600
    height: 420

    Row {
        id: tools
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
        height: 28
        spacing: 8
        LmText {
            anchors.verticalCenter: parent.verticalCenter
            text: DevicesManager.qsLMTr("ShownAsHex")
        }
        LmSwitchButton {
            id: hexSwitch
            objectName: "hexSwitch"
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    LmButton {
        objectName: "recordClear"
        anchors { right: parent.right; top: parent.top; margins: 12 }
        primary: false
        text: DevicesManager.qsLMTr("Clear")
        onClicked: if (root.address) root.address.clearDataList()
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; top: tools.bottom; bottom: parent.bottom; margins: 12 }
        color: Theme.surface
        border.color: Theme.frame
        radius: 3
        ListView {
            id: recordList
            objectName: "recordList"
            anchors { fill: parent; margins: 6 }
            clip: true
            model: root.lines
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
            onCountChanged: positionViewAtEnd()
            delegate: LmText {
                width: recordList.width
                wrapMode: Text.WrapAnywhere
                font.family: Theme.fontMonospace
                text: modelData
            }
        }
    }
}
