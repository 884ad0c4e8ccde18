import QtQuick 2.15
import comm.devicesManager 1.0

Rectangle {
    id: root
    width: 1130
    height: 680
    color: "#f5f5f5"

    Rectangle {
        id: titleBar
        width: parent.width
        height: 32
        color: "#262626"
        Text {
            anchors.verticalCenter: parent.verticalCenter
            x: 12
            color: "#BEBEBE"
            text: DevicesManager.qsLMTr("Lang_CommSet")
        }
    }
}
