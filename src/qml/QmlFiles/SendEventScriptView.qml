import QtQuick 2.15
import comm.devicesManager 1.0

// Script of a send event (switched off with its page).
Column {
    id: root
    spacing: 4

    SectionHeading {
        width: root.width
        text: DevicesManager.qsLMTr("Lang_Script")
    }
    Rectangle {
        x: 16
        width: root.width - 32
        height: 120
        color: Theme.surface
        border.color: Theme.frame
        radius: 3
    }
}
