import QtQuick 2.15
import comm.devicesManager 1.0

// Triggers fired by a received text, and how the text is matched.
TriggerTable {
    sourceColumns: [
        { title: DevicesManager.qsLMTr("RunParam_Trigger Character"), width: 140 },
        { title: DevicesManager.qsLMTr("MatchMode"), width: 110 }
    ]
}
