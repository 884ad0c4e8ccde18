import QtQuick 2.15
import QtQuick.Layouts 1.15
import comm.devicesManager 1.0

// Root of the communication page: title bar (dragging moves the window, the
// close button hides it), the navigation bar and the page stack.
Rectangle {
    id: root
    width: 1130
    height: 680
    color: Theme.page

    readonly property bool hasMainWindow: typeof MainWindow !== "undefined" && MainWindow !== null
    // The device manager is the operators' only page. The event, trigger,
    // response and heartbeat pages stay switched off: their tabs are hidden
    // and their pages never made, unless the host publishes the developer
    // switch LmDevPages ("1", or the icon name of the tab to open first).
    readonly property string devPagesSwitch: typeof LmDevPages === "string" ? LmDevPages : ""
    readonly property bool devPages: devPagesSwitch.length > 0 && devPagesSwitch !== "0"
    readonly property var tabs: [
        { key: "Lang_DeviceManager", icon: "deviceMng", page: "" },
        { key: "Lang_RecvEvents", icon: "recvMsg", page: "RecvEventView.qml" },
        { key: "RunParam_Send Event", icon: "sendMsg", page: "SendEventView.qml" },
        { key: "Lang_TriggerOperate", icon: "trigger", page: "TriggerConfigView.qml" },
        { key: "Lang_ResponseConfig", icon: "respond", page: "ResponseConfigView.qml" },
        { key: "Lang_Heart", icon: "heart", page: "HeartbeatManagementView.qml" }
    ]
    property int currentTab: startTab()

    function startTab() {
        for (var i = 1; root.devPages && i < tabs.length; ++i) {
            if (tabs[i].icon === root.devPagesSwitch)
                return i
        }
        return 0
    }

    Rectangle {
        id: titleBar
        objectName: "titleBar"
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 32
        color: Theme.titleBar

        MouseArea {
            id: dragArea
            anchors.fill: parent
            property point pressPos
            onPressed: pressPos = Qt.point(mouse.x, mouse.y)
            onPositionChanged: {
                if (!root.hasMainWindow)
                    return
                MainWindow.x += mouse.x - pressPos.x
                MainWindow.y += mouse.y - pressPos.y
            }
        }
        LmText {
            objectName: "titleText"
            anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
            font.pixelSize: Theme.fontHeading
            color: Theme.titleText
            text: DevicesManager.qsLMTr("Lang_CommSet")
        }
        MouseArea {
            id: closeButton
            objectName: "closeButton"
            anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
            width: 40
            hoverEnabled: true
            onClicked: if (root.hasMainWindow) MainWindow.ViewHide()
            Rectangle {
                anchors.fill: parent
                color: closeButton.pressed ? Theme.closePressed : (closeButton.containsMouse ? Theme.closeHover : "transparent")
            }
            Image {
                anchors.centerIn: parent
                source: "qrc:/Images/259_close_12rollover2.png"
            }
        }
    }

    Rectangle {
        id: navigationBar
        objectName: "navigationBar"
        anchors { left: parent.left; top: titleBar.bottom; bottom: parent.bottom }
        width: 97
        color: Theme.navigationBar

        Column {
            Repeater {
                id: tabButtons
                model: root.tabs
                delegate: MouseArea {
                    id: tab
                    objectName: "tab_" + modelData.icon
                    readonly property bool current: index === root.currentTab
                    visible: modelData.page.length === 0 || root.devPages
                    width: 96
                    height: 92
                    hoverEnabled: true
                    onClicked: root.currentTab = index
                    Rectangle {
                        anchors.fill: parent
                        color: tab.current ? Theme.navigationCurrent : (tab.containsMouse ? Theme.navigationHover : "transparent")
                    }
                    Rectangle {
                        visible: tab.current
                        width: 3
                        height: parent.height
                        color: Theme.navigationMark
                    }
                    Column {
                        anchors.centerIn: parent
                        spacing: 8
                        Image {
                            anchors.horizontalCenter: parent.horizontalCenter
                            source: "qrc:/Images/ic_" + modelData.icon
                                    + (!tab.enabled ? "_disable.png" : tab.current || tab.pressed ? "_click.png" : "_normal.png")
                        }
                        LmText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            width: 88
                            horizontalAlignment: Text.AlignHCenter
                            // Longer names ("Receive Events") take a second line.
                            wrapMode: Text.WordWrap
                            maximumLineCount: 2
                            elide: Text.ElideRight
                            color: tab.current ? Theme.navigationTextCurrent : Theme.navigationText
                            text: DevicesManager.qsLMTr(modelData.key)
                        }
                    }
                }
            }
        }
        Rectangle {
            anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
            width: 1
            color: Theme.navigationEdge
        }
    }

    GatewayBanner {
        id: gatewayBanner
        objectName: "gatewayBanner"
        anchors { left: navigationBar.right; right: parent.right; top: titleBar.bottom }
    }

    StackLayout {
        id: pages
        objectName: "pageStack"
        anchors { left: navigationBar.right; right: parent.right; top: gatewayBanner.bottom; bottom: parent.bottom }
        currentIndex: root.devPages ? root.currentTab : 0
        DeviceManagementView {
            id: deviceManagement
            objectName: "deviceManagementView"
        }
        Repeater {
            model: root.tabs.slice(1)
            delegate: Loader {
                objectName: "page_" + modelData.icon
                active: root.devPages
                source: modelData.page
            }
        }
    }
}
