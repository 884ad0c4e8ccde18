import QtQuick 2.15
import QtQuick.Layouts 1.15
import comm.devicesManager 1.0

// Trigger page: a tab per kind of trigger (event, IO, received text) over
// that kind's table.
Rectangle {
    id: root
    property int currentKind: 0

    color: Theme.page

    Rectangle {
        id: kindBar
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 40
        color: Theme.surface
        Row {
            anchors { left: parent.left; leftMargin: 16; top: parent.top; bottom: parent.bottom }
            spacing: 8
            Repeater {
                model: [DevicesManager.qsLMTr("Lang_EventTrigger"), DevicesManager.qsLMTr("Lang_IOTrigger"),
                        DevicesManager.qsLMTr("Lang_CharacterTrigger")]
                delegate: MouseArea {
                    id: kindTab
                    objectName: "triggerKind" + index
                    readonly property bool current: index === root.currentKind
                    width: kindText.implicitWidth + 24
                    height: parent.height
                    hoverEnabled: true
                    onClicked: root.currentKind = index
                    LmText {
                        id: kindText
                        anchors.centerIn: parent
                        font.pixelSize: Theme.fontHeading
                        font.bold: kindTab.current
                        color: kindTab.current || kindTab.containsMouse ? Theme.accent : Theme.text
                        text: modelData
                    }
                    Rectangle {
                        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                        height: 2
                        visible: kindTab.current
                        color: Theme.accent
                    }
                }
            }
        }
        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 1
            color: Theme.divider
        }
    }
    StackLayout {
        objectName: "triggerPages"
        anchors { left: parent.left; right: parent.right; top: kindBar.bottom; bottom: parent.bottom }
        currentIndex: root.currentKind
        EventTriggerView {}
        IOTriggerView {}
        CharacterTriggerView {}
    }
}
