import QtQuick 2.15

// One setting of a page: its label, then its control (the row's children,
// placed at labelWidth and centred on the row's height).
Item {
    id: root
    property string label
    property int labelWidth: 150
    property int controlWidth: 200
    default property alias control: holder.data

    implicitWidth: labelWidth + controlWidth
    implicitHeight: 32

    LmText {
        objectName: "fieldLabel"
        x: 16
        width: root.labelWidth - 24
        height: root.height
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        color: root.enabled ? Theme.text : Theme.textDisabled
        text: root.label
    }
    Item {
        id: holder
        x: root.labelWidth
        width: root.controlWidth
        height: 26
        anchors.verticalCenter: parent.verticalCenter
    }
}
