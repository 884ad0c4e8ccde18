import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0
import lm.cpp.ProfinetFixedButton 1.0

// The fixed PROFINET addresses of a device: the heartbeat interval, and for
// the read and the write address their poll switch, a data sync and the
// table of their bits. Opening the dialog reads both addresses once.
DialogFrame {
    id: root
    property ProfinetFixedButtonData pItemData: null

    title: pItemData ? pItemData.windowTitle : ""
    width: 760
    height: 560

    onOpened: {
        if (!pItemData)
            return
        pItemData.synchrodata(true)
        pItemData.synchrodata(false)
    }

    Row {
        id: heartbeatRow
        x: 20
        y: 14
        height: 28
        spacing: 12
        LmText {
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: DevicesManager.qsLMTr("HeartbeatInterval")
        }
        LmRangeInputBox {
            id: heartbeatBox
            objectName: "heartbeatBox"
            width: 160
            height: parent.height
            minValue: 100
            maxValue: 60000
            step: 100
            currentValue: root.pItemData ? root.pItemData.writeHeartBeat : 0
            // Write through the model, then show what it kept.
            onValueEdited: {
                root.pItemData.writeHeartBeat = value
                currentValue = Qt.binding(function() { return root.pItemData ? root.pItemData.writeHeartBeat : 0 })
            }
        }
    }

    Row {
        anchors { left: parent.left; right: parent.right; top: heartbeatRow.bottom; bottom: parent.bottom; margins: 20 }
        spacing: 20
        Repeater {
            model: [true, false] // the read address, then the write address
            delegate: Column {
                id: side
                readonly property bool isRead: modelData
                objectName: isRead ? "readSide" : "writeSide"
                width: (parent.width - 20) / 2
                height: parent.height
                spacing: 10
                Item {
                    width: parent.width
                    height: 28
                    LmText {
                        objectName: "addressCaption"
                        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                        font.pixelSize: Theme.fontHeading
                        font.bold: true
                        text: !root.pItemData ? "" : side.isRead ? root.pItemData.readAddressText
                                                                 : root.pItemData.writeAddressText
                    }
                    LmButton {
                        objectName: "dataSyncButton"
                        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                        primary: false
                        text: DevicesManager.qsLMTr("Lang_DataSyn")
                        onClicked: if (root.pItemData) root.pItemData.synchrodata(side.isRead)
                    }
                }
                Row {
                    height: 24
                    spacing: 10
                    LmText {
                        height: parent.height
                        verticalAlignment: Text.AlignVCenter
                        text: DevicesManager.qsLMTr("PollEnable")
                    }
                    LmSwitchButton {
                        objectName: "pollSwitch"
                        anchors.verticalCenter: parent.verticalCenter
                        switchStatus: !root.pItemData ? false : side.isRead ? root.pItemData.readPollEnable
                                                                            : root.pItemData.writePollEnable
                        // The model notifies after every write; the binding
                        // brings back what it kept.
                        onSwitchClicked: {
                            if (side.isRead)
                                root.pItemData.readPollEnable = status
                            else
                                root.pItemData.writePollEnable = status
                            switchStatus = Qt.binding(function() {
                                return !root.pItemData ? false : side.isRead ? root.pItemData.readPollEnable
                                                                             : root.pItemData.writePollEnable
                            })
                        }
                    }
                }
                FixedAddressTableView {
                    objectName: "bitTable"
                    width: parent.width
                    height: parent.height - 72
                    entries: !root.pItemData ? [] : side.isRead ? root.pItemData.readFixedAddressList
                                                                : root.pItemData.writeFixedAddressList
                }
            }
        }
    }
}
