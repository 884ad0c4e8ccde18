import QtQuick 2.15
import QtQuick.Window 2.15
import comm.devicesManager 1.0

// The selected stream device's state and counters, with the reset button.
// Counters are read from the gateway once a second while the strip is on
// screen.
Rectangle {
    id: root
    property var device: null
    // Counter name of the gateway, translation key of its label.
    readonly property var counterLabels: [
        { name: "RxBytes", key: "Lang_CntRxBytes" }, { name: "TxBytes", key: "Lang_CntTxBytes" },
        { name: "RxFrames", key: "Lang_CntRxFrames" }, { name: "TxFrames", key: "Lang_CntTxFrames" },
        { name: "Dropped", key: "Lang_CntDropped" }, { name: "Errors", key: "Lang_CntErrors" },
        { name: "Reconnects", key: "Lang_CntReconnects" }
    ]

    implicitHeight: 52
    color: Theme.surface
    border.color: Theme.frame
    radius: 3

    Timer {
        objectName: "countersTimer"
        interval: 1000
        repeat: true
        triggeredOnStart: true
        // Only while the page is on screen: a hidden window asks nothing.
        running: root.visible && root.Window.window !== null && root.Window.window.visible
                 && root.device !== null && root.device.hasStatus
        onTriggered: root.device.refreshCounters()
    }
    DeviceStatusLabel {
        id: label
        objectName: "stripStatus"
        anchors { left: parent.left; leftMargin: 10; top: parent.top; topMargin: 7 }
        device: root.device
    }
    LmText {
        objectName: "stripDetail"
        anchors { left: label.right; leftMargin: 12; right: resetButton.left; rightMargin: 10; verticalCenter: label.verticalCenter }
        elide: Text.ElideRight
        font.pixelSize: Theme.fontCaption
        color: Theme.textSecondary
        text: root.device ? root.device.statusDetail : ""
    }
    Row {
        objectName: "counterRow"
        anchors { left: parent.left; leftMargin: 10; right: resetButton.left; bottom: parent.bottom; bottomMargin: 6 }
        spacing: 14
        clip: true
        Repeater {
            model: root.counterLabels
            delegate: LmText {
                objectName: "counter_" + modelData.name
                font.pixelSize: Theme.fontCaption
                text: DevicesManager.qsLMTr(modelData.key) + " "
                      + (root.device && root.device.counters[modelData.name] !== undefined
                         ? root.device.counters[modelData.name] : "-")
            }
        }
    }
    LmButton {
        id: resetButton
        objectName: "resetCounters"
        primary: false
        height: 24
        anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
        text: DevicesManager.qsLMTr("Lang_ResetCounters")
        onClicked: if (root.device) root.device.resetCounters()
    }
}
