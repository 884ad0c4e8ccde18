import QtQuick 2.15
import comm.devicesManager 1.0

// Input of a send event: bound device and its parameter list (switched off
// with its page).
Column {
    id: root
    spacing: 4

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_PmList")
    }
    Row {
        x: 16
        spacing: 40
        Repeater {
            model: ["Lang_Num", "Lang_Name", "Lang_Type", "Lang_Result", "Multi_BindingDevice", "RunParam_Status"]
            delegate: LmText {
                color: Theme.textSecondary
                text: DevicesManager.qsLMTr(modelData)
            }
        }
    }
}
