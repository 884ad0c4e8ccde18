import QtQuick 2.15
import comm.devicesManager 1.0

// Table of one kind of trigger: number, what fires it (sourceColumns), the
// command it gives (running a procedure or changing the solution), whether it
// is active, and the row's operations.
Item {
    id: root
    property var sourceColumns: []

    SectionHeading {
        id: heading
        anchors { left: parent.left; right: parent.right; top: parent.top }
        text: DevicesManager.qsLMTr("Lang_TriggerOperate")
    }
    PlainTable {
        objectName: "triggerTable"
        anchors { left: parent.left; right: parent.right; top: heading.bottom; bottom: parent.bottom
                  leftMargin: 16; rightMargin: 16; bottomMargin: 16 }
        columns: [{ title: DevicesManager.qsLMTr("Lang_Num"), width: 60 }].concat(root.sourceColumns, [
            { title: DevicesManager.qsLMTr("CommandType"), width: 120 },
            { title: DevicesManager.qsLMTr("ExecuteProcedure"), width: 150 },
            { title: DevicesManager.qsLMTr("ChangeSolution"), width: 150 },
            { title: DevicesManager.qsLMTr("RunParam_TriggerActivation"), width: 100 },
            { title: DevicesManager.qsLMTr("Lang_Operation"), width: 100 }
        ])
    }
}
