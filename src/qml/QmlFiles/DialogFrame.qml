import QtQuick 2.15
import QtQuick.Controls 2.15

// Frame of the page's modal dialogs: centred on the page, with a title line
// and a close button.
Popup {
    id: root
    property string title
    default property alias body: bodyItem.data

    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    padding: 0
    closePolicy: Popup.CloseOnEscape
    Overlay.modal: Rectangle { color: Theme.modalShade }
    background: Rectangle { color: Theme.surface; radius: 4; border.color: Theme.popupBorder }

    contentItem: Item {
        Item {
            id: titleLine
            anchors { left: parent.left; right: parent.right; top: parent.top }
            height: 40
            LmText {
                objectName: "dialogTitle"
                anchors { left: parent.left; leftMargin: 16; right: closeArea.left; verticalCenter: parent.verticalCenter }
                elide: Text.ElideRight
                font.pixelSize: Theme.fontTitle
                font.bold: true
                text: root.title
            }
            MouseArea {
                id: closeArea
                objectName: "dialogClose"
                anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
                width: 40
                onClicked: root.close()
                Image {
                    anchors.centerIn: parent
                    source: parent.pressed ? "qrc:/Images/msg_close_click.png" : "qrc:/Images/msg_close_normal.png"
                }
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                height: 1
                color: Theme.divider
            }
        }
        Item {
            id: bodyItem
            anchors { left: parent.left; right: parent.right; top: titleLine.bottom; bottom: parent.bottom }
        }
    }
}
