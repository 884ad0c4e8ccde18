import QtQuick 2.15

// Title line of a list: the title, the "create" button and a line below.
Item {
    id: root
    property string title
    property alias createButton: createButton
    signal createClicked()

    height: 44

    LmText {
        anchors { left: parent.left; leftMargin: 16; right: createButton.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        elide: Text.ElideRight
        font.pixelSize: Theme.fontTitle
        font.bold: true
        text: root.title
    }
    CreateButton {
        id: createButton
        objectName: "createButton"
        anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
        onClicked: root.createClicked()
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Theme.divider
    }
}
