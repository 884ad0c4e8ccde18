import QtQuick 2.15

// A count of the event (field: the name of its property), from 0 to maximum.
FieldRow {
    id: root
    property var event: null
    property string field
    property int maximum: 9999

    enabled: event !== null

    LmRangeInputBox {
        objectName: "number_" + root.field
        anchors.fill: parent
        minValue: 0
        maxValue: root.maximum
        currentValue: root.event ? root.event[root.field] : 0
        onValueEdited: {
            root.event[root.field] = value
            currentValue = Qt.binding(function() { return root.event ? root.event[root.field] : 0 })
        }
    }
}
