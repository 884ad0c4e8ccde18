import QtQuick 2.15
import comm.devicesManager 1.0

// Choice among the communication devices by display name. deviceID is the
// device shown (-1: none); deviceChosen reports the operator's choice, which
// the owner keeps by setting deviceID.
LmComboBox {
    id: root
    property int deviceID: -1
    readonly property var devices: DevicesManager.commDeviceList
    signal deviceChosen(int id)

    function indexOfDevice(id) {
        for (var i = 0; i < devices.length; ++i) {
            if (devices[i] && devices[i].deviceID === id)
                return i
        }
        return -1
    }
    function deviceNames() {
        var names = []
        for (var i = 0; i < devices.length; ++i)
            names.push(devices[i] ? devices[i].deviceName : "")
        return names
    }

    // Device names are shown as the operators typed them.
    translateItems: false
    comboBoxListModel: deviceNames()
    currentIndex: indexOfDevice(deviceID)
    onSigCurrentSelectItemChanged: {
        var id = devices[index].deviceID
        currentIndex = Qt.binding(function() { return root.indexOfDevice(root.deviceID) })
        root.deviceChosen(id)
    }
}
