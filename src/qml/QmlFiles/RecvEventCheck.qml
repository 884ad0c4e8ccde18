import QtQuick 2.15
import QtQuick.Controls 2.15

// An on/off setting of the event (field: the name of its property).
CheckBox {
    id: root
    property var event: null
    property string field

    objectName: "check_" + field
    x: 12
    height: 30
    padding: 4
    enabled: event !== null
    font.pixelSize: Theme.fontBody
    checked: event ? event[field] : false
    onToggled: event[field] = checked
}
