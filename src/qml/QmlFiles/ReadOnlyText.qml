import QtQuick 2.15

// A value the operator can read but not change.
ItemRow {
    id: root

    Text {
        objectName: "readOnlyValue"
        anchors.fill: parent
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        font.pixelSize: Theme.fontBody
        color: Theme.textSecondary
        text: root.pItemData ? root.pItemData.curValue : ""
    }
}
