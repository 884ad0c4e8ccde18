import QtQuick 2.15

// IP address parameter: a host address is chosen from (or typed over) the
// local address list, a target address is typed in four parts.
ItemRow {
    id: root
    readonly property bool hostAddress: pItemData ? pItemData.isHostIP : false

    function write(ip) {
        root.pItemData.setIPString(ip)
    }

    LmComboBoxEdit {
        id: hostBox
        objectName: "hostIpBox"
        visible: root.hostAddress
        anchors.fill: parent
        comboBoxListModel: root.pItemData ? root.pItemData.ipList : []
        currentIndex: root.pItemData ? root.pItemData.ipList.indexOf(root.pItemData.ipString) : -1
        currentValue: root.pItemData ? root.pItemData.ipString : ""
        validator: RegExpValidator { regExp: /[0-9.]{0,15}/ }
        onValueEdited: {
            root.write(value)
            currentValue = Qt.binding(function() { return root.pItemData ? root.pItemData.ipString : "" })
            currentIndex = Qt.binding(function() {
                return root.pItemData ? root.pItemData.ipList.indexOf(root.pItemData.ipString) : -1
            })
        }
    }
    LmIPInputBox {
        id: targetBox
        objectName: "targetIpBox"
        visible: !root.hostAddress
        anchors.fill: parent
        singleBoxWidth: (width - 18) / 4
        currentIPString: root.pItemData ? root.pItemData.ipString : ""
        onIpEdited: {
            root.write(ip)
            currentIPString = Qt.binding(function() { return root.pItemData ? root.pItemData.ipString : "" })
        }
    }
}
