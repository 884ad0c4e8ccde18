import QtQuick 2.15
import comm.devicesManager 1.0

// Editor of a script receive event: the device, whether the script's result
// is sent back to it, and the separator.
Column {
    id: root
    property var event: null
    spacing: 2

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_Script")
    }
    RecvEventDeviceChoice {
        event: root.event
    }
    RecvEventCheck {
        event: root.event
        field: "responseEnable"
        text: DevicesManager.qsLMTr("Lang_ReplyDevice")
    }
    RecvEventSplitChoice {
        event: root.event
        field: "splitChar"
    }
}
