import QtQuick 2.15

// Integer parameter: a range box clamped to the item's limits, with the
// item's message tip.
ItemRow {
    id: root
    hasMessageTip: pItemData ? pItemData.hasMessageTip : false
    messageTip: pItemData ? pItemData.messageTip : ""

    LmRangeInputBox {
        id: box
        objectName: "integerBox"
        anchors.fill: parent
        currentValue: root.pItemData ? root.pItemData.currentValue : 0
        minValue: root.pItemData ? root.pItemData.minValue : 0
        maxValue: root.pItemData ? root.pItemData.maxValue : 0
        step: root.pItemData ? root.pItemData.stepValue : 1
        // Write through the model, then show what it kept (the old value when
        // the gateway refused).
        onValueEdited: {
            root.pItemData.currentValue = value
            currentValue = Qt.binding(function() { return root.pItemData ? root.pItemData.currentValue : 0 })
        }
    }
}
