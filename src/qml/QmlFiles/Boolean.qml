import QtQuick 2.15

// Boolean parameter: an on/off switch.
ItemRow {
    id: root

    LmSwitchButton {
        id: box
        objectName: "booleanSwitch"
        anchors.verticalCenter: parent.verticalCenter
        switchStatus: root.pItemData ? root.pItemData.curValue : false
        onSwitchClicked: {
            root.pItemData.curValue = status
            switchStatus = Qt.binding(function() { return root.pItemData ? root.pItemData.curValue : false })
        }
    }
}
