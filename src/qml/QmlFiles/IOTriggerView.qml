import QtQuick 2.15
import comm.devicesManager 1.0

// Triggers fired by an IO and what happens on it.
TriggerTable {
    sourceColumns: [
        { title: DevicesManager.qsLMTr("Lang_TriggerIO"), width: 120 },
        { title: DevicesManager.qsLMTr("Lang_Operate"), width: 120 }
    ]
}
