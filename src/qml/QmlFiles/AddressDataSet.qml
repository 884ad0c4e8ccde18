import QtQuick 2.15
import comm.devicesManager 1.0

// Address table of a fieldbus device (the table itself comes with the
// address views; this frame holds its place in the parameter panel).
Rectangle {
    id: root
    property var pItemData: null

    width: 730
    height: 500
    visible: pItemData ? pItemData.visibility : true
    color: Theme.surface
    border.color: Theme.frame
    radius: 3

    LmText {
        objectName: "addressTitle"
        x: 12
        y: 10
        font.pixelSize: Theme.fontHeading
        font.bold: true
        text: root.pItemData ? DevicesManager.qsLMTr(root.pItemData.displayName) : ""
    }
}
