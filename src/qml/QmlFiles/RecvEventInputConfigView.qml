import QtQuick 2.15
import comm.devicesManager 1.0

// Input of a text receive event: the device it takes data from, the separator
// of the incoming text (splitField: "splitChar" for parsing, "inputSplitChar"
// for comparing) and the length check of each field.
Column {
    id: root
    property var event: null
    property string splitField: "splitChar"
    spacing: 2

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_InputCfg")
    }
    RecvEventDeviceChoice {
        event: root.event
    }
    RecvEventSplitChoice {
        event: root.event
        field: root.splitField
    }
    RecvEventCheck {
        event: root.event
        field: "compareCharLengthEnable"
        text: DevicesManager.qsLMTr("Lang_StringCompare")
    }
    RecvEventNumber {
        event: root.event
        field: "charsLength"
        label: DevicesManager.qsLMTr("Lang_StringLength")
        enabled: root.event !== null && root.event.compareCharLengthEnable
    }
}
