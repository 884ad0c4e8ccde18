import QtQuick 2.15
import comm.devicesManager 1.0
import comm.recvEventManager 1.0

// Creation dialog of an event: processing mode, event type and a line saying
// what the chosen kind does. For receive events "Create" makes the event and
// hands it over with recvEventCreated; for send events (sendEvents) it only
// reports the choice, as no model stands behind them.
DialogFrame {
    id: root
    property bool sendEvents: false
    readonly property int mode: modeBox.currentIndex
    readonly property int type: typeBox.currentIndex
    signal recvEventCreated(var event)
    signal sendEventChosen(int mode, int type)

    title: DevicesManager.qsLMTr("Lang_EventConfig")
    width: 370
    height: 415

    // The modes, each mode's event types and the line describing each type.
    readonly property var modes: sendEvents ? ["RunParam_Text"] : ["RunParam_Text", "Lang_ByteMatch", "Lang_Script"]
    readonly property var types: sendEvents
        ? [["Lang_DirctOutput", "Lang_AssemblyOutput"]]
        : [["Lang_ProtocolParse", "Lang_ProtocolAssembly"], ["Lang_ProtocolParse"], ["Lang_Script"]]
    readonly property var descriptions: sendEvents
        ? [["Lang_EventDirectOutput", "Lang_EventAssemblyOutput"]]
        : [["Lang_EventProtocolPrase", "Lang_EventProtocolAssembly"], ["Lang_EventByte"], ["Lang_EventShell"]]

    // The kind of receive event (createRecvEvent's type) of a mode and type;
    // 0 when the pair makes none.
    function recvEventKind(mode, type) {
        if (mode === 0)
            return type === 0 ? RecvEventManager.TextProtocolParse : type === 1 ? RecvEventManager.TextProtocolCompare : 0
        if (mode === 1)
            return type === 0 ? RecvEventManager.ByteMatchCompare : 0
        return mode === 2 ? RecvEventManager.Script : 0
    }
    function openFor() {
        modeBox.currentIndex = 0
        typeBox.currentIndex = 0
        open()
    }
    function accept() {
        if (root.sendEvents) {
            root.sendEventChosen(root.mode, root.type)
            close()
            return
        }
        var kind = recvEventKind(root.mode, root.type)
        var event = kind > 0 ? RecvEventManager.createRecvEvent(kind) : null
        if (!event)
            return
        root.recvEventCreated(event)
        close()
    }

    Column {
        anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 16 }
        spacing: 12
        FieldRow {
            labelWidth: 120
            controlWidth: 210
            label: DevicesManager.qsLMTr("Lang_DealMethod")
            LmComboBox {
                id: modeBox
                objectName: "modeBox"
                anchors.fill: parent
                comboBoxListModel: root.modes
                currentIndex: 0
                onSigCurrentSelectItemChanged: typeBox.currentIndex = 0
            }
        }
        FieldRow {
            labelWidth: 120
            controlWidth: 210
            label: DevicesManager.qsLMTr("Lang_EventType")
            LmComboBox {
                id: typeBox
                objectName: "typeBox"
                anchors.fill: parent
                comboBoxListModel: root.mode >= 0 ? root.types[root.mode] : []
                readOnly: comboBoxListModel.length < 2
                currentIndex: 0
            }
        }
        Rectangle {
            x: 16
            width: parent.width - 32
            height: 150
            color: Theme.page
            border.color: Theme.frame
            radius: 3
            LmText {
                objectName: "typeDescription"
                anchors.fill: parent
                anchors.margins: 10
                wrapMode: Text.Wrap
                color: Theme.textSecondary
                text: root.mode >= 0 && root.type >= 0 && root.type < root.descriptions[root.mode].length
                      ? DevicesManager.qsLMTr(root.descriptions[root.mode][root.type]) : ""
            }
        }
    }
    Row {
        anchors { right: parent.right; bottom: parent.bottom; margins: 16 }
        spacing: 10
        LmButton {
            objectName: "eventCreate"
            text: DevicesManager.qsLMTr("Create")
            onClicked: root.accept()
        }
        LmButton {
            objectName: "eventCancel"
            primary: false
            text: DevicesManager.qsLMTr("Lang_ClickCancel")
            onClicked: root.close()
        }
    }
}
