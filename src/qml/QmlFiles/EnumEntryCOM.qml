import QtQuick 2.15

// Serial port choice; the list is asked from the gateway each time it opens.
ItemRow {
    id: root

    LmComboBox {
        id: box
        objectName: "comBox"
        anchors.fill: parent
        comboBoxListModel: root.pItemData ? root.pItemData.coms : []
        currentIndex: root.pItemData ? root.pItemData.curIndex : -1
        onSigUpdateModel: root.pItemData.getComList()
        onSigCurrentSelectItemChanged: {
            root.pItemData.curIndex = index
            currentIndex = Qt.binding(function() { return root.pItemData ? root.pItemData.curIndex : -1 })
        }
    }
}
