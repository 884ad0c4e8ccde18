import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// The bits of one fixed PROFINET address: the bit ("byte.bit"), its name in
// the page's language and its value ("1", "0", or "-1" when the address's
// data does not reach that bit).
Rectangle {
    id: root
    // The address's bit entries (AddressInfo objects).
    property var entries: []
    readonly property var columns: [
        { title: DevicesManager.qsLMTr("Lang_Address"), width: 70 },
        { title: DevicesManager.qsLMTr("RunParam_Content"), width: root.width - 140 },
        { title: DevicesManager.qsLMTr("value"), width: 70 }
    ]

    color: Theme.surface
    border.color: Theme.frame
    radius: 3

    Rectangle {
        id: header
        objectName: "fixedTableHeader"
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 1 }
        height: 32
        color: Theme.page
        Row {
            anchors.fill: parent
            Repeater {
                model: root.columns
                delegate: LmText {
                    width: modelData.width
                    height: header.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    color: Theme.textSecondary
                    text: modelData.title
                }
            }
        }
        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 1
            color: Theme.divider
        }
    }

    ListView {
        id: list
        objectName: "fixedBitList"
        anchors { left: parent.left; right: parent.right; top: header.bottom; bottom: parent.bottom; margins: 1 }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.entries
        ScrollBar.vertical: ScrollBar { policy: list.contentHeight > list.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff }
        delegate: Rectangle {
            objectName: "fixedBitRow"
            readonly property string bitKey: modelData ? modelData.fixedAddress : ""
            readonly property string bitName: modelData ? DevicesManager.qsLMTr(modelData.addrName) : ""
            readonly property string bitValue: modelData ? modelData.data : ""
            width: list.width
            height: 28
            color: rowArea.containsMouse ? Theme.rowHover : Theme.surface
            Row {
                anchors.fill: parent
                LmText {
                    width: root.columns[0].width
                    height: parent.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    font.family: Theme.fontMonospace
                    text: bitKey
                }
                LmText {
                    width: root.columns[1].width
                    height: parent.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    text: bitName
                }
                LmText {
                    objectName: "fixedBitValue"
                    width: root.columns[2].width
                    height: parent.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    font.family: Theme.fontMonospace
                    font.bold: bitValue === "1"
                    color: bitValue === "1" ? Theme.accent : Theme.textSecondary
                    text: bitValue
                }
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                height: 1
                color: Theme.rowSeparator
            }
            MouseArea {
                id: rowArea
                anchors.fill: parent
                hoverEnabled: true
                acceptedButtons: Qt.NoButton
            }
        }
    }
}
