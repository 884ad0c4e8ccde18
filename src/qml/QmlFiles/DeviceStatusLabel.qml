import QtQuick 2.15
import QtQuick.Controls 2.15

// A device's state: a coloured dot and the translated word, with the
// gateway's detail text as tool tip.
Item {
    id: root
    property var device: null
    readonly property string detail: device ? device.statusDetail : ""

    implicitWidth: row.implicitWidth
    implicitHeight: Math.max(16, word.implicitHeight)
    visible: device !== null

    Row {
        id: row
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5
        Rectangle {
            objectName: "statusDot"
            anchors.verticalCenter: parent.verticalCenter
            width: 8
            height: 8
            radius: 4
            color: Theme.statusColor(root.device ? root.device.statusLevel : "off")
        }
        LmText {
            id: word
            objectName: "statusWord"
            font.pixelSize: Theme.fontCaption
            color: Theme.textSecondary
            text: root.device ? root.device.statusText : ""
        }
    }
    MouseArea {
        id: hover
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.NoButton
    }
    LmToolTip {
        objectName: "statusTip"
        visible: hover.containsMouse && root.detail !== ""
        text: root.detail
        delay: 400
        // Below the label, never under the pointer (which would end the hover).
        x: 0
        y: root.height + 4
    }
}
