import QtQuick 2.15
import comm.devicesManager 1.0

// Heartbeat page: the settings of a heartbeat (device, single or multiple
// values, interval, content, on/off) over the table of heartbeats. A plain
// view: no model stands behind it, so the table has no rows.
Rectangle {
    id: root
    color: Theme.page

    SectionHeading {
        id: heading
        anchors { left: parent.left; right: parent.right; top: parent.top }
        text: DevicesManager.qsLMTr("Lang_Heart")
    }
    Flow {
        id: settings
        anchors { left: parent.left; right: parent.right; top: heading.bottom }
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_Device")
            DeviceComboBox {
                anchors.fill: parent
                onDeviceChosen: deviceID = id
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_HeartType")
            LmComboBox {
                anchors.fill: parent
                translateItems: false
                comboBoxListModel: [DevicesManager.qsLMTr("SingleData"), DevicesManager.qsLMTr("MultiData")]
                currentIndex: 0
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_TimeInterval")
            LmRangeInputBox {
                anchors.fill: parent
                minValue: 100
                maxValue: 3600000
                step: 100
                currentValue: 1000
            }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_SendContent")
            SubscriptionBox { anchors.fill: parent }
        }
        FieldRow {
            label: DevicesManager.qsLMTr("Lang_OnOff")
            LmSwitchButton { anchors.verticalCenter: parent.verticalCenter }
        }
    }
    PlainTable {
        objectName: "heartbeatTable"
        anchors { left: parent.left; right: parent.right; top: settings.bottom; bottom: parent.bottom
                  topMargin: 12; leftMargin: 16; rightMargin: 16; bottomMargin: 16 }
        columns: [
            { title: DevicesManager.qsLMTr("Lang_Num"), width: 60 },
            { title: DevicesManager.qsLMTr("Lang_Device"), width: 160 },
            { title: DevicesManager.qsLMTr("Lang_HeartType"), width: 130 },
            { title: DevicesManager.qsLMTr("Lang_TimeInterval"), width: 130 },
            { title: DevicesManager.qsLMTr("Lang_SendContent"), width: 240 },
            { title: DevicesManager.qsLMTr("Lang_OnOff"), width: 90 },
            { title: DevicesManager.qsLMTr("Lang_Operation"), width: 100 }
        ]
    }
}
