import QtQuick 2.15
import comm.devicesManager 1.0

// Triggers fired by an event.
TriggerTable {
    sourceColumns: [{ title: DevicesManager.qsLMTr("Lnag_TriggerEvent"), width: 200 }]
}
