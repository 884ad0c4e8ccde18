import QtQuick 2.15
import comm.devicesManager 1.0

// Settings of a direct-output event: the device and its status, and the
// parameters that are output as they are. A plain view: no model stands
// behind it, so a choice lasts only as long as the view.
Column {
    id: root
    property string listTitle: DevicesManager.qsLMTr("Lang_PmList")
    spacing: 2

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Tab_Basic Config")
    }
    FieldRow {
        label: DevicesManager.qsLMTr("Multi_BindingDevice")
        DeviceComboBox {
            anchors.fill: parent
            onDeviceChosen: deviceID = id
        }
    }
    FieldRow {
        label: DevicesManager.qsLMTr("RunParam_Status")
        LmSwitchButton {
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    SectionHeading {
        width: root.width
        text: root.listTitle
    }
    PlainTable {
        x: 16
        width: root.width - 32
        height: 200
        columns: [
            { title: DevicesManager.qsLMTr("Lang_Num"), width: 70 },
            { title: DevicesManager.qsLMTr("Lang_Name"), width: 200 },
            { title: DevicesManager.qsLMTr("Lang_Type"), width: 140 },
            { title: DevicesManager.qsLMTr("Lang_Result"), width: 140 }
        ]
    }
}
