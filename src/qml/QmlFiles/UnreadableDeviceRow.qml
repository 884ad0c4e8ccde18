import QtQuick 2.15
import comm.devicesManager 1.0

// A device that the gateway runs but whose description cannot be read: type
// and name as in the device list, greyed, with a warning mark whose tool tip
// says which file and line. It has no parameters and cannot be selected.
Rectangle {
    id: root
    property var entry: ({})
    height: 56
    color: Theme.surface

    Column {
        anchors { left: parent.left; leftMargin: 16; right: mark.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        spacing: 3
        LmText {
            objectName: "deviceType"
            width: parent.width
            elide: Text.ElideRight
            font.pixelSize: Theme.fontCaption
            color: Theme.textDisabled
            text: DevicesManager.qsLMTr(root.entry.deviceType || "") + " · " + DevicesManager.qsLMTr("Lang_DeviceWithoutParameters")
        }
        LmText {
            objectName: "deviceName"
            width: parent.width
            elide: Text.ElideRight
            font.pixelSize: Theme.fontHeading
            color: Theme.textDisabled
            text: root.entry.deviceName || ""
        }
    }
    Image {
        id: mark
        objectName: "unreadableMark"
        anchors { right: parent.right; rightMargin: 18; verticalCenter: parent.verticalCenter }
        width: 18
        height: 18
        source: "qrc:/Images/warning.png"
        MouseArea {
            id: hover
            anchors.fill: parent
            hoverEnabled: true
        }
        LmToolTip {
            objectName: "problemToolTip"
            visible: hover.containsMouse
            text: root.entry.problem || ""
        }
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: 16 }
        height: 1
        color: Theme.rowSeparator
    }
}
