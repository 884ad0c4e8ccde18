import QtQuick 2.15
import comm.devicesManager 1.0
import comm.GlobalEventFilter 1.0
import "ControlHelpers.js" as Helpers

// Editable drop-down: the text may be typed or chosen from the list.
// currentValue is the text; valueEdited reports the operator's choice.
Rectangle {
    id: root
    property var comboBoxListModel: []
    property int currentIndex: -1
    property string currentValue
    property bool readOnly: false
    property bool translateItems: false
    property int fontSize: Theme.fontBody
    property color textColor: Theme.text
    property color borderColor: Theme.controlBorder
    property int borderWidth: 1
    property int itemHeight: 26
    property var validator: null
    readonly property bool popupVisible: popup.visible
    signal sigCurrentSelectItemChanged(int index)
    signal sigUpdateModel()
    signal valueEdited(string value)

    implicitWidth: 180
    implicitHeight: 26
    radius: 3
    color: root.readOnly || !root.enabled ? Theme.controlReadOnly : Theme.controlBackground
    border.width: root.borderWidth
    border.color: popup.visible || input.activeFocus ? Theme.controlBorderFocus : root.borderColor
    opacity: enabled ? 1.0 : Theme.disabledBoxOpacity

    function takeValue(value) {
        if (value === root.currentValue) {
            input.text = value
            return
        }
        root.currentValue = value
        root.valueEdited(value)
    }
    onCurrentValueChanged: input.text = currentValue

    TextInput {
        id: input
        objectName: "comboEditInput"
        anchors { left: parent.left; right: arrowArea.left; top: parent.top; bottom: parent.bottom; leftMargin: 8 }
        verticalAlignment: TextInput.AlignVCenter
        clip: true
        readOnly: root.readOnly
        selectByMouse: true
        font.pixelSize: root.fontSize
        color: root.enabled ? root.textColor : Theme.textDisabled
        validator: root.validator
        Component.onCompleted: text = root.currentValue
        onEditingFinished: root.takeValue(text)
    }
    MouseArea {
        id: arrowArea
        objectName: "comboArea"
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        width: 26
        onClicked: {
            if (root.readOnly)
                return
            if (popup.visible) {
                popup.close()
                return
            }
            root.sigUpdateModel()
            popup.open()
        }
        Image {
            anchors.centerIn: parent
            source: !root.enabled || root.readOnly ? "qrc:/Images/combo_ic_triangle_disable.png"
                  : popup.visible ? "qrc:/Images/combo_ic_triangle_click.png"
                  : "qrc:/Images/combo_ic_triangle_normal.png"
            rotation: popup.visible ? 180 : 0
        }
    }
    GlobalEventFilter {
        filterEnable: input.activeFocus
        onGlobalMousePressEvent: {
            if (!Helpers.containsGlobal(root, globalPos))
                input.focus = false
        }
    }
    LmComboBoxListPopup {
        id: popup
        objectName: "comboPopup"
        y: root.height
        width: root.width
        comboBoxListModel: root.comboBoxListModel
        itemHeight: root.itemHeight
        maskedRegion: root
        selectedIndex: root.currentIndex
        translateItems: root.translateItems
        onCurrentSelectIndexChanged: {
            root.currentIndex = index
            root.sigCurrentSelectItemChanged(index)
            root.takeValue(String(root.comboBoxListModel[index]))
        }
    }
}
