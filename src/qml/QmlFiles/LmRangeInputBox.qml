import QtQuick 2.15
import comm.GlobalEventFilter 1.0
import "ControlHelpers.js" as Helpers

// Numeric box with step buttons. Typed and stepped values are clamped to
// minValue..maxValue (when a range is given) and reported with valueEdited.
Rectangle {
    id: root
    property real currentValue: 0
    property real minValue: 0
    property real maxValue: 0
    property real step: 1
    property int numericType: 0 // 0: integer, 1: decimal
    property int decimals: 2
    property bool readOnly: false
    property int fontSize: Theme.fontBody
    property color borderColor: Theme.controlBorder
    signal valueEdited(real value)

    implicitWidth: 180
    implicitHeight: 26
    radius: 3
    color: root.readOnly || !root.enabled ? Theme.controlReadOnly : Theme.controlBackground
    border.color: input.activeFocus ? Theme.controlBorderFocus : root.borderColor
    opacity: enabled ? 1.0 : Theme.disabledBoxOpacity

    function format(value) {
        return root.numericType === 0 ? String(Math.round(value)) : Number(value).toFixed(root.decimals)
    }
    // Takes a value from the operator: rounded for integers, clamped, reported
    // when it differs from the current one.
    function commit(value) {
        if (isNaN(value)) {
            input.text = format(root.currentValue)
            return
        }
        if (root.numericType === 0)
            value = Math.round(value)
        value = Helpers.clamp(value, root.minValue, root.maxValue)
        input.text = format(value)
        if (value === root.currentValue)
            return
        root.currentValue = value
        root.valueEdited(value)
    }
    function stepBy(direction) {
        if (root.readOnly)
            return
        var increment = root.step > 0 ? root.step : 1
        commit(root.currentValue + direction * increment)
    }

    onCurrentValueChanged: input.text = format(currentValue)

    TextInput {
        id: input
        objectName: "rangeInput"
        anchors { left: parent.left; right: buttons.left; top: parent.top; bottom: parent.bottom; leftMargin: 6 }
        verticalAlignment: TextInput.AlignVCenter
        clip: true
        readOnly: root.readOnly
        selectByMouse: true
        font.pixelSize: root.fontSize
        color: root.enabled ? Theme.text : Theme.textDisabled
        validator: RegExpValidator { regExp: root.numericType === 0 ? /-?\d{0,10}/ : /-?\d{0,10}([.]\d{0,6})?/ }
        Component.onCompleted: text = root.format(root.currentValue)
        onEditingFinished: root.commit(text.length > 0 ? Number(text) : NaN)
        Keys.onUpPressed: root.stepBy(1)
        Keys.onDownPressed: root.stepBy(-1)
    }
    Column {
        id: buttons
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom; margins: 1 }
        width: 18
        visible: !root.readOnly
        Repeater {
            model: [1, -1]
            delegate: MouseArea {
                objectName: modelData > 0 ? "stepUp" : "stepDown"
                width: buttons.width
                height: buttons.height / 2
                onClicked: root.stepBy(modelData)
                Image {
                    anchors.centerIn: parent
                    source: modelData > 0
                            ? (parent.pressed ? "qrc:/Images/combo_ic_top_click.png" : "qrc:/Images/combo_ic_top_normal.png")
                            : (parent.pressed ? "qrc:/Images/combo_ic_down_click.png" : "qrc:/Images/combo_ic_down_normal.png")
                }
            }
        }
    }
    // The wheel steps the value while the box is being edited.
    MouseArea {
        anchors.fill: input
        acceptedButtons: Qt.NoButton
        onWheel: {
            if (input.activeFocus)
                root.stepBy(wheel.angleDelta.y > 0 ? 1 : -1)
            else
                wheel.accepted = false
        }
    }
    GlobalEventFilter {
        filterEnable: input.activeFocus
        onGlobalMousePressEvent: {
            if (!Helpers.containsGlobal(root, globalPos))
                input.focus = false
        }
    }
}
