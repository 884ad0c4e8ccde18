import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0
import comm.recvEventManager 1.0

// List of the receive events by name; a click makes an event the current one,
// "create" asks for a new one.
Rectangle {
    id: root
    property var currentEvent: null
    signal createRequested()

    color: Theme.surface

    ListHeader {
        id: header
        anchors { left: parent.left; right: parent.right; top: parent.top }
        title: DevicesManager.qsLMTr("接收事件列表")
        onCreateClicked: root.createRequested()
    }
    ListView {
        id: list
        objectName: "recvEventList"
        anchors { left: parent.left; right: parent.right; top: header.bottom; bottom: parent.bottom }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: RecvEventManager.recvEvents
        ScrollBar.vertical: ScrollBar {}
        delegate: Rectangle {
            id: row
            objectName: "recvEventRow" + index
            readonly property bool selected: modelData === root.currentEvent
            width: list.width
            height: 40
            color: selected ? Theme.highlight : (rowArea.containsMouse ? Theme.rowHover : Theme.surface)

            Rectangle {
                visible: row.selected
                width: 3
                height: parent.height
                color: Theme.accent
            }
            LmText {
                objectName: "eventName"
                anchors { left: parent.left; leftMargin: 16; right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
                elide: Text.ElideRight
                font.pixelSize: Theme.fontHeading
                text: modelData ? modelData.eventName : ""
            }
            MouseArea {
                id: rowArea
                anchors.fill: parent
                hoverEnabled: true
                onClicked: root.currentEvent = modelData
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: 16 }
                height: 1
                color: Theme.rowSeparator
            }
        }
    }
}
