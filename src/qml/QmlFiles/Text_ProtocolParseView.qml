import QtQuick 2.15
import comm.devicesManager 1.0

// Editor of a text-parse receive event: its input (device, separator, length
// check) and the list of the fields parsed from the text.
Column {
    id: root
    property var event: null
    spacing: 2

    RecvEventInputConfigView {
        width: root.width
        event: root.event
        splitField: "splitChar"
    }
    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_ParseList")
    }
    PlainTable {
        x: 16
        width: root.width - 32
        height: 220
        columns: [
            { title: DevicesManager.qsLMTr("Lang_Num"), width: 70 },
            { title: DevicesManager.qsLMTr("Lang_Name"), width: 170 },
            { title: DevicesManager.qsLMTr("Lang_Type"), width: 120 },
            { title: DevicesManager.qsLMTr("Lang_CompareRule"), width: 170 },
            { title: DevicesManager.qsLMTr("Lang_Result"), width: 120 }
        ]
    }
}
