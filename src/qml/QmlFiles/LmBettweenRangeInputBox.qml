import QtQuick 2.15

// A from-to pair of numeric boxes: the first value never exceeds the second.
Row {
    id: root
    property real firstCurrentValue: 0
    property real secondCurrentValue: 0
    property real minValue: 0
    property real maxValue: 0
    property real step: 1
    property int numericType: 0
    property bool readOnly: false
    property int boxWidth: 80
    signal firstValueEdited(real value)
    signal secondValueEdited(real value)

    spacing: 4
    height: 26

    LmRangeInputBox {
        id: first
        objectName: "firstBox"
        width: root.boxWidth
        height: root.height
        currentValue: root.firstCurrentValue
        minValue: root.minValue
        maxValue: root.secondCurrentValue
        step: root.step
        numericType: root.numericType
        readOnly: root.readOnly
        onValueEdited: {
            root.firstCurrentValue = value
            currentValue = Qt.binding(function() { return root.firstCurrentValue })
            root.firstValueEdited(value)
        }
    }
    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: "-"
        color: Theme.text
    }
    LmRangeInputBox {
        id: second
        objectName: "secondBox"
        width: root.boxWidth
        height: root.height
        currentValue: root.secondCurrentValue
        minValue: root.firstCurrentValue
        maxValue: root.maxValue
        step: root.step
        numericType: root.numericType
        readOnly: root.readOnly
        onValueEdited: {
            root.secondCurrentValue = value
            currentValue = Qt.binding(function() { return root.secondCurrentValue })
            root.secondValueEdited(value)
        }
    }
}
