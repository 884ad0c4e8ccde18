import QtQuick 2.15
import comm.recvEventManager 1.0

// Receive-event page: the event list and, right of a divider, the editor of
// the current event's kind. A new event made in the creation dialog becomes
// the current one.
Rectangle {
    id: root
    property alias currentEvent: eventList.currentEvent
    property alias createDialog: createDlg

    color: Theme.page

    // The editor of each kind of event.
    function editorFile(kind) {
        switch (kind) {
        case RecvEventManager.TextProtocolParse: return "Text_ProtocolParseView.qml"
        case RecvEventManager.TextProtocolCompare: return "Text_ProtocolCompareView.qml"
        case RecvEventManager.ByteMatchCompare: return "ByteMatch_ProtocolCompareView.qml"
        case RecvEventManager.Script: return "RecvEventScriptView.qml"
        }
        return ""
    }

    RecvEventListView {
        id: eventList
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: 250
        onCreateRequested: createDlg.openFor()
    }
    Rectangle {
        id: divider
        anchors { left: eventList.right; top: parent.top; bottom: parent.bottom }
        width: 2
        color: Theme.divider
    }
    // Each event gets an editor of its own kind, made with the event, so no
    // editor ever sees an event of another kind.
    Loader {
        id: editor
        objectName: "recvEventEditor"
        anchors { left: divider.right; right: parent.right; top: parent.top; bottom: parent.bottom }
    }
    onCurrentEventChanged: {
        editor.source = ""
        if (currentEvent)
            editor.setSource(editorFile(currentEvent.enumIndex), { event: currentEvent })
    }
    EventManagementDlg {
        id: createDlg
        onRecvEventCreated: root.currentEvent = event
    }
}
