import QtQuick 2.15
import comm.devicesManager 1.0

// Common frame of a parameter item control: the translated name at
// leftMargin, the control at controlSpace, the description as tool tip.
// A disabled item is greyed out, an invisible one hidden.
Item {
    id: root
    property var pItemData: null
    property int leftMargin: 10
    property int controlSpace: 160
    property bool hasMessageTip: false
    property string messageTip
    default property alias control: holder.data
    readonly property int controlWidth: width - controlSpace - 2

    width: 340
    height: 30
    visible: pItemData ? pItemData.visibility : true
    enabled: pItemData ? pItemData.enable : true

    LmText {
        id: label
        objectName: "itemLabel"
        x: root.leftMargin
        width: root.controlSpace - root.leftMargin - (tip.visible ? tip.width + 6 : 6)
        height: root.height
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        color: root.enabled ? Theme.text : Theme.textDisabled
        text: root.pItemData ? DevicesManager.qsLMTr(root.pItemData.displayName) : ""
        MouseArea {
            id: labelHover
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.NoButton
        }
        LmToolTip {
            objectName: "labelToolTip"
            visible: labelHover.containsMouse && root.pItemData !== null
                     && (label.truncated || root.pItemData.description.length > 0)
            text: root.pItemData ? (root.pItemData.description.length > 0 ? root.pItemData.description : label.text) : ""
            delay: 500
        }
    }
    Image {
        id: tip
        objectName: "messageTipIcon"
        visible: root.hasMessageTip && root.messageTip.length > 0
        anchors { left: label.right; leftMargin: 3; verticalCenter: parent.verticalCenter }
        source: "qrc:/Images/btn_help.png"
        MouseArea {
            id: tipHover
            anchors.fill: parent
            hoverEnabled: true
        }
        LmToolTip {
            objectName: "messageToolTip"
            visible: tipHover.containsMouse
            text: root.messageTip
        }
    }
    Item {
        id: holder
        x: root.controlSpace
        width: root.controlWidth
        height: 26
        anchors.verticalCenter: parent.verticalCenter
    }
}
