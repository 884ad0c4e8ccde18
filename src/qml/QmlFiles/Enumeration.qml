import QtQuick 2.15

// A choice among the item's entries.
ItemRow {
    id: root
    hasMessageTip: pItemData ? pItemData.hasMessageTip : false
    messageTip: pItemData ? pItemData.messageTip : ""

    LmComboBox {
        id: box
        objectName: "enumBox"
        anchors.fill: parent
        comboBoxListModel: root.pItemData ? root.pItemData.enums : []
        currentIndex: root.pItemData ? root.pItemData.curIndex : -1
        onSigCurrentSelectItemChanged: {
            root.pItemData.curIndex = index
            currentIndex = Qt.binding(function() { return root.pItemData ? root.pItemData.curIndex : -1 })
        }
    }
}
