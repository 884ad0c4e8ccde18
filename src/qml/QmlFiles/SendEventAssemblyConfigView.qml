import QtQuick 2.15
import comm.devicesManager 1.0

// Assembly of a send event: separators and the assembled contents (switched
// off with its page).
Column {
    id: root
    spacing: 4

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_SplitConfig")
    }
    Row {
        x: 16
        spacing: 12
        LmText {
            anchors.verticalCenter: parent.verticalCenter
            text: DevicesManager.qsLMTr("RunParam_Split Symbol")
        }
        SubscriptionBox {
            width: 120
            currentText: ";"
        }
    }
    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Tab_Assemble List")
    }
    LmText {
        x: 16
        color: Theme.textSecondary
        text: DevicesManager.qsLMTr("RunParam_Content")
    }
}
