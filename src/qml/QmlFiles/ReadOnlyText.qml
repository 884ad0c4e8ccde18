import QtQuick 2.15

// A value the operator can read but not change.
ItemRow {
    id: root

    Text {
        objectName: "readOnlyValue"
        anchors.fill: parent
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        font.pixelSize: 12
        color: "#5B6B7F"
        text: root.pItemData ? root.pItemData.curValue : ""
    }
}
