import QtQuick 2.15
import comm.devicesManager 1.0

// Drop-down list. The shown texts pass through qsLMTr. Choosing an entry sets
// currentIndex and reports it with sigCurrentSelectItemChanged; sigUpdateModel
// asks the owner to refresh the list before it opens.
Rectangle {
    id: root
    property var comboBoxListModel: []
    property int currentIndex: -1
    property bool readOnly: false
    property bool translateItems: true
    property int fontSize: Theme.fontBody
    property color textColor: Theme.text
    property color borderColor: Theme.controlBorder
    property int borderWidth: 1
    property int itemHeight: 26
    readonly property bool popupVisible: popup.visible
    readonly property string currentText: currentIndex >= 0 && comboBoxListModel
        && currentIndex < comboBoxListModel.length ? String(comboBoxListModel[currentIndex]) : ""
    signal sigCurrentSelectItemChanged(int index)
    signal sigUpdateModel()

    implicitWidth: 180
    implicitHeight: 26
    radius: 3
    color: root.readOnly || !root.enabled ? Theme.controlReadOnly : Theme.controlBackground
    border.width: root.borderWidth
    border.color: popup.visible || area.containsMouse ? Theme.controlBorderFocus : root.borderColor
    opacity: enabled ? 1.0 : Theme.disabledBoxOpacity

    LmText {
        objectName: "comboText"
        anchors { left: parent.left; right: arrow.left; verticalCenter: parent.verticalCenter; leftMargin: 8; rightMargin: 4 }
        elide: Text.ElideRight
        font.pixelSize: root.fontSize
        color: root.enabled ? root.textColor : Theme.textDisabled
        text: root.translateItems ? DevicesManager.qsLMTr(root.currentText) : root.currentText
    }
    Image {
        id: arrow
        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        source: !root.enabled || root.readOnly ? "qrc:/Images/combo_ic_triangle_disable.png"
              : popup.visible ? "qrc:/Images/combo_ic_triangle_click.png"
              : "qrc:/Images/combo_ic_triangle_normal.png"
        rotation: popup.visible ? 180 : 0
    }
    MouseArea {
        id: area
        objectName: "comboArea"
        anchors.fill: parent
        hoverEnabled: true
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
        }
    }
}
