import QtQuick 2.15
import comm.devicesManager 1.0

// A separator of the event (field: the name of its property), chosen among the
// event's splitChars.
FieldRow {
    id: root
    property var event: null
    property string field

    label: DevicesManager.qsLMTr("RunParam_Split Symbol")
    enabled: event !== null

    function chosenIndex() { return event ? event.splitChars.indexOf(event[field]) : -1 }

    LmComboBox {
        objectName: "choice_" + root.field
        anchors.fill: parent
        translateItems: false
        comboBoxListModel: root.event ? root.event.splitChars : []
        currentIndex: root.chosenIndex()
        onSigCurrentSelectItemChanged: {
            root.event[root.field] = root.event.splitChars[index]
            currentIndex = Qt.binding(function() { return root.chosenIndex() })
        }
    }
}
