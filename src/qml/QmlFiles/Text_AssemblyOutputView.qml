import QtQuick 2.15
import comm.devicesManager 1.0

// Settings of an assembled-output event: those of the direct output, with its
// parameters as the input, and the separator the assembly puts between them.
// A plain view: no model stands behind it.
Column {
    id: root
    spacing: 2

    Text_DirectOutputView {
        width: root.width
        listTitle: DevicesManager.qsLMTr("Lang_InputCfg")
    }
    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_Assembly")
    }
    FieldRow {
        label: DevicesManager.qsLMTr("RunParam_Split Symbol")
        SubscriptionBox {
            anchors.fill: parent
            currentText: ";"
        }
    }
}
