import QtQuick 2.15

// A table of a switched-off page: its column headings over the table's body.
// No model stands behind these pages, so the body has no rows.
Rectangle {
    id: root
    // { title: translated heading, width: pixels }; the last column takes the rest.
    property var columns: []

    implicitHeight: 200
    color: Theme.surface
    border.color: Theme.frame
    radius: 3

    Rectangle {
        id: header
        objectName: "tableHeader"
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 1 }
        height: 32
        color: Theme.page
        Row {
            anchors.fill: parent
            Repeater {
                model: root.columns
                delegate: LmText {
                    width: index === root.columns.length - 1 ? Math.max(60, header.width - x) : modelData.width
                    height: header.height
                    leftPadding: 10
                    rightPadding: 6
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    color: Theme.textSecondary
                    text: modelData.title
                }
            }
        }
        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 1
            color: Theme.divider
        }
    }
}
