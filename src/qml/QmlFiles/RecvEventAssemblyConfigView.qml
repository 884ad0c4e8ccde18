import QtQuick 2.15
import comm.devicesManager 1.0

// Assembly of a receive event's reply: whether the event replies to the
// device it took the data from, and the separator of the assembled text.
Column {
    id: root
    property var event: null
    spacing: 2

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_Assembly")
    }
    RecvEventCheck {
        event: root.event
        field: "responseEnable"
        text: DevicesManager.qsLMTr("Lang_ReplyDevice")
    }
    RecvEventSplitChoice {
        event: root.event
        field: "assembleSplitChar"
    }
}
