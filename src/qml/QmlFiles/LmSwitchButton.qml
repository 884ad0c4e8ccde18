import QtQuick 2.15

// On/off switch. A click flips switchStatus and reports the new state with
// switchClicked; an owner bound to a model re-binds after its write.
Item {
    id: root
    property bool switchStatus: false
    signal switchClicked(bool status)

    implicitWidth: 40
    implicitHeight: 20
    opacity: enabled ? 1.0 : Theme.disabledButtonOpacity

    Image {
        anchors.centerIn: parent
        source: root.switchStatus ? "qrc:/Images/swith_on.png" : "qrc:/Images/swith_off.png"
    }
    MouseArea {
        anchors.fill: parent
        cursorShape: Qt.PointingHandCursor
        onClicked: {
            root.switchStatus = !root.switchStatus
            root.switchClicked(root.switchStatus)
        }
    }
}
