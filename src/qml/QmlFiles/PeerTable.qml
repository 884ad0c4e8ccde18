import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0

// The peers of a TCP server device: address, connected since, bytes in and
// out, last activity, and a button that drops the peer.
Rectangle {
    id: root
    property var device: null
    readonly property var peers: device ? device.peers : []
    readonly property var columns: [
        { key: "Lang_PeerAddress", width: 150 }, { key: "Lang_PeerSince", width: 150 },
        { key: "Lang_PeerRx", width: 80 }, { key: "Lang_PeerTx", width: 80 }, { key: "Lang_PeerLast", width: 150 }
    ]

    implicitHeight: 26 + 24 * 3 + 2
    color: Theme.surface
    border.color: Theme.frame
    radius: 3

    // "2026-05-04T10:15:02" as "2026-05-04 10:15:02".
    function timeText(iso) {
        return iso ? iso.replace("T", " ") : ""
    }

    Rectangle {
        id: header
        objectName: "peerHeader"
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 1 }
        height: 26
        color: Theme.page
        Row {
            anchors.fill: parent
            Repeater {
                model: root.columns
                delegate: LmText {
                    width: modelData.width
                    height: header.height
                    leftPadding: 10
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    font.pixelSize: Theme.fontCaption
                    color: Theme.textSecondary
                    text: DevicesManager.qsLMTr(modelData.key)
                }
            }
        }
    }
    LmText {
        objectName: "noPeers"
        visible: root.peers.length === 0
        anchors { left: parent.left; leftMargin: 10; top: header.bottom; topMargin: 5 }
        font.pixelSize: Theme.fontCaption
        color: Theme.textCaption
        text: DevicesManager.qsLMTr("Lang_NoPeers")
    }
    ListView {
        id: peerList
        objectName: "peerList"
        anchors { left: parent.left; right: parent.right; top: header.bottom; bottom: parent.bottom; margins: 1 }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.peers
        ScrollBar.vertical: ScrollBar {}
        delegate: Item {
            id: peerRow
            objectName: "peerRow" + index
            width: peerList.width
            height: 24
            readonly property var cells: [modelData.address, root.timeText(modelData.since), modelData.rx,
                                          modelData.tx, root.timeText(modelData.lastActivity)]
            Row {
                anchors.fill: parent
                Repeater {
                    model: peerRow.cells
                    delegate: LmText {
                        width: root.columns[index].width
                        height: 24
                        leftPadding: 10
                        verticalAlignment: Text.AlignVCenter
                        elide: Text.ElideRight
                        font.pixelSize: Theme.fontCaption
                        text: modelData
                    }
                }
            }
            LmButton {
                objectName: "dropPeer"
                primary: false
                height: 20
                fontSize: Theme.fontCaption
                anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
                text: DevicesManager.qsLMTr("Lang_DropPeer")
                onClicked: root.device.dropPeer(modelData.address)
            }
        }
    }
}
