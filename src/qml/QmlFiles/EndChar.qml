import QtQuick 2.15

// End characters of a message, typed as text (\r\n for CR LF).
ItemRow {
    id: root

    SubscriptionBox {
        id: box
        objectName: "endCharBox"
        anchors.fill: parent
        currentText: root.pItemData ? root.pItemData.curValue : ""
        maximumLength: root.pItemData && root.pItemData.maxLength > 0 ? root.pItemData.maxLength : 32767
        onEditFinished: {
            root.pItemData.curValue = text
            currentText = Qt.binding(function() { return root.pItemData ? root.pItemData.curValue : "" })
        }
    }
}
