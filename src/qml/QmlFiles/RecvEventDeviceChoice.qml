import QtQuick 2.15
import comm.devicesManager 1.0

// The device whose received data the event takes (its bindDeviceID). The
// event stores that id without notifying, so the choice is read from the
// event whenever another event is shown and after every write.
FieldRow {
    id: root
    property var event: null

    label: DevicesManager.qsLMTr("Multi_BindingDevice")
    enabled: event !== null

    function show() { box.deviceID = event ? event.bindDeviceID : -1 }
    onEventChanged: show()
    Component.onCompleted: show()

    DeviceComboBox {
        id: box
        objectName: "bindDeviceChoice"
        anchors.fill: parent
        onDeviceChosen: {
            root.event.bindDeviceID = id
            root.show()
        }
    }
}
