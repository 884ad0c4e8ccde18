import QtQuick 2.15
import comm.devicesManager 1.0

// The "create" button of a list's title line: the add icon and the word,
// both turning to the accent colour under the mouse.
MouseArea {
    id: root
    width: createRow.width + 12
    height: 28
    hoverEnabled: true

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: root.containsMouse ? Theme.highlight : "transparent"
    }
    Row {
        id: createRow
        anchors.centerIn: parent
        spacing: 4
        Image {
            anchors.verticalCenter: parent.verticalCenter
            source: root.pressed || root.containsMouse
                    ? "qrc:/Images/ic_add_click.png" : "qrc:/Images/ic_add_normal.png"
        }
        LmText {
            anchors.verticalCenter: parent.verticalCenter
            color: root.containsMouse ? Theme.accent : Theme.textSecondary
            text: DevicesManager.qsLMTr("create")
        }
    }
}
