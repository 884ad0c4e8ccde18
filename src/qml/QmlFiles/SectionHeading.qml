import QtQuick 2.15

// Heading of a panel section: a short accent mark and the title; children are
// placed on the heading's line (check boxes, buttons).
Item {
    id: root
    property string text
    implicitHeight: 36

    Rectangle {
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        width: 3
        height: 14
        color: Theme.accent
    }
    LmText {
        objectName: "headingText"
        x: 25
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: Theme.fontHeading
        font.bold: true
        text: root.text
    }
}
