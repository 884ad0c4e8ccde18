import QtQuick 2.15

// A value the operator can read but not change.
ItemRow {
    id: root

    LmText {
        objectName: "readOnlyValue"
        anchors.fill: parent
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        color: Theme.textSecondary
        text: root.pItemData ? root.pItemData.curValue : ""
    }
}
