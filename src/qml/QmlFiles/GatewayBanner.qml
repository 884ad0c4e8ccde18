import QtQuick 2.15
import comm.devicesManager 1.0

// A bar over the pages while the gateway is away or just came back: what
// GatewayStatus says, in the warning or the success colours. Takes no room
// while the gateway is online.
Rectangle {
    id: banner
    readonly property var status: DevicesManager.gatewayStatus
    readonly property bool shown: status !== null && status.bannerVisible
    readonly property bool restored: shown && status.restored

    height: shown ? 28 : 0
    visible: shown
    color: restored ? Theme.bannerRestored : Theme.bannerWarning

    LmText {
        objectName: "gatewayBannerText"
        anchors { left: parent.left; leftMargin: 12; right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
        elide: Text.ElideRight
        textFormat: Text.PlainText
        color: banner.restored ? Theme.bannerRestoredText : Theme.bannerWarningText
        text: banner.shown ? banner.status.text : ""
    }
}
