import QtQuick 2.15
import comm.devicesManager 1.0

// List of send events (switched off with its page).
Rectangle {
    id: root
    property var events: []
    color: Theme.surface

    SectionHeading {
        id: heading
        anchors { left: parent.left; right: parent.right; top: parent.top }
        text: DevicesManager.qsLMTr("发送事件列表")
    }
    ListView {
        anchors { left: parent.left; right: parent.right; top: heading.bottom; bottom: parent.bottom }
        clip: true
        model: root.events
        delegate: LmText {
            x: 16
            height: 30
            verticalAlignment: Text.AlignVCenter
            text: modelData
        }
    }
}
