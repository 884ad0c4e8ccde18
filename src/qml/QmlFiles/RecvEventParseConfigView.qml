import QtQuick 2.15
import comm.devicesManager 1.0

// Parsing of a byte-match receive event: the device, the byte comparison and
// its length, match data entered as ASCII, and how the match rules combine.
Column {
    id: root
    property var event: null
    spacing: 2

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_ParseConfig")
    }
    RecvEventDeviceChoice {
        event: root.event
    }
    RecvEventCheck {
        event: root.event
        field: "byteCompareEnable"
        text: DevicesManager.qsLMTr("Lang_ByteCompare")
    }
    RecvEventNumber {
        event: root.event
        field: "byteLength"
        label: DevicesManager.qsLMTr("Lang_ByteLength")
        enabled: root.event !== null && root.event.byteCompareEnable
    }
    RecvEventCheck {
        event: root.event
        field: "asciiDataEnable"
        text: DevicesManager.qsLMTr("Lang_AciiToHexTips")
    }
    FieldRow {
        label: DevicesManager.qsLMTr("Lang_RuleLogic")
        enabled: root.event !== null
        // matchRule is the index of the chosen logic.
        LmComboBox {
            objectName: "choice_matchRule"
            anchors.fill: parent
            comboBoxListModel: ["Lang_Sequence", "Lang_StartEnd"]
            currentIndex: root.event ? root.event.matchRule : -1
            onSigCurrentSelectItemChanged: {
                root.event.matchRule = index
                currentIndex = Qt.binding(function() { return root.event ? root.event.matchRule : -1 })
            }
        }
    }
    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_RuleList")
    }
    PlainTable {
        x: 16
        width: root.width - 32
        height: 150
        columns: [
            { title: DevicesManager.qsLMTr("Lang_Num"), width: 70 },
            { title: DevicesManager.qsLMTr("Lang_Type"), width: 160 },
            { title: DevicesManager.qsLMTr("RunParam_Content"), width: 200 }
        ]
    }
}
