import QtQuick 2.15

// Push button of the page: the primary kind is drawn with the button images,
// the secondary kind as a white framed button.
Item {
    id: root
    property string text
    property bool primary: true
    property int fontSize: Theme.fontBody
    signal clicked()

    implicitWidth: Math.max(80, label.implicitWidth + 24)
    implicitHeight: 28
    opacity: enabled ? 1.0 : Theme.disabledButtonOpacity

    BorderImage {
        anchors.fill: parent
        visible: root.primary
        border { left: 6; right: 6; top: 6; bottom: 6 }
        source: area.pressed ? "qrc:/Images/btn_click.png" : "qrc:/Images/btn_normal.png"
    }
    Rectangle {
        anchors.fill: parent
        visible: !root.primary
        radius: 4
        color: area.pressed ? Theme.highlight : Theme.controlBackground
        border.color: area.containsMouse ? Theme.accent : Theme.controlBorder
    }
    LmText {
        id: label
        anchors.centerIn: parent
        text: root.text
        font.pixelSize: root.fontSize
        color: root.primary ? Theme.textOnAccent : Theme.text
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.clicked()
    }
}
