import QtQuick 2.15
import comm.devicesManager 1.0

// Section heading of the parameter panel with its part line.
Item {
    id: root
    property var pItemData: null
    property int leftMargin: 10
    property int controlSpace: 160

    width: 340
    height: 30
    visible: pItemData ? pItemData.visibility : true

    Rectangle {
        objectName: "categoryMark"
        x: root.leftMargin
        anchors.verticalCenter: parent.verticalCenter
        width: 3
        height: 14
        color: Theme.accent
    }
    LmText {
        id: heading
        objectName: "categoryText"
        x: root.leftMargin + 9
        width: root.width - x
        height: root.height
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        font.pixelSize: Theme.fontHeading
        font.bold: true
        color: root.pItemData && !root.pItemData.enable ? Theme.textDisabled : Theme.text
        text: root.pItemData ? DevicesManager.qsLMTr(root.pItemData.displayName) : ""
    }
    Rectangle {
        objectName: "partLine"
        visible: root.pItemData ? root.pItemData.partLineVisible : false
        anchors { left: parent.left; leftMargin: heading.x + heading.contentWidth + 10; right: parent.right;
                  rightMargin: 10; verticalCenter: parent.verticalCenter }
        height: 1
        color: Theme.divider
    }
}
