import QtQuick 2.15
import comm.devicesManager 1.0

// Send-event page: the event list and the editors of the current event. The
// page is kept switched off in the root page; no model drives it yet.
Rectangle {
    id: root
    color: Theme.page

    SendEventListView {
        id: eventList
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: 250
    }
    Rectangle {
        id: divider
        anchors { left: eventList.right; top: parent.top; bottom: parent.bottom }
        width: 2
        color: Theme.divider
    }
    Column {
        anchors { left: divider.right; right: parent.right; top: parent.top }
        SendEventInputConfigView { width: parent.width }
        SendEventAssemblyConfigView { width: parent.width }
        SendEventScriptView { width: parent.width }
    }
}
