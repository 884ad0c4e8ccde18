import QtQuick 2.15
import QtQuick.Controls 2.15

// Parameter controls of one device: for every item proxy the QML file that it
// names, given the proxy's data model as pItemData. Read-only texts and
// address tables take the single-column area; every other control a cell of
// the two-column grid below it.
Flickable {
    id: root
    property var controls: []
    readonly property int gridCellWidth: 340
    readonly property int gridLeftMargin: 10
    readonly property int gridControlSpace: 160
    signal itemMessage(int type, string text)

    clip: true
    contentWidth: width
    contentHeight: content.height + 10
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar { policy: root.contentHeight > root.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff }

    function singleColumnFile(qmlName) {
        return qmlName === "ReadOnlyText.qml" || qmlName === "AddressDataSet.qml"
    }

    function clear() {
        // destroy() is deferred: take the controls out of the layout at once.
        for (var i = 0; i < controls.length; ++i) {
            controls[i].visible = false
            controls[i].parent = null
            controls[i].destroy()
        }
        controls = []
    }

    // Builds the controls of the given proxies, replacing the previous ones.
    function build(proxies) {
        clear()
        var made = []
        for (var i = 0; proxies && i < proxies.length; ++i) {
            var proxy = proxies[i]
            if (!proxy || !proxy.data)
                continue
            var component = Qt.createComponent(proxy.qmlName)
            if (component.status !== Component.Ready) {
                console.warn("parameter control", proxy.qmlName, component.errorString())
                continue
            }
            var props = { pItemData: proxy.data }
            var parentItem = grid
            if (singleColumnFile(proxy.qmlName)) {
                parentItem = singleColumn
                if (proxy.qmlName === "ReadOnlyText.qml") {
                    props.width = 340
                    props.height = 30
                }
            } else {
                props.width = gridCellWidth
                props.height = 30
                props.leftMargin = gridLeftMargin
                props.controlSpace = gridControlSpace
            }
            var control = component.createObject(parentItem, props)
            if (!control)
                continue
            made.push(control)
            messageRelay.createObject(control, { target: proxy.data })
        }
        controls = made
        contentY = 0
    }

    // Each control carries the relay of its model's messages; it goes with
    // the control, and a model deleted first simply stops sending.
    Component {
        id: messageRelay
        Connections {
            function onMessageBox(nMsgBoxType, strMsg) { root.itemMessage(nMsgBoxType, strMsg) }
        }
    }

    Column {
        id: content
        width: root.width
        Column {
            id: singleColumn
            objectName: "singleColumn"
            x: 6
            spacing: 5
        }
        Item { width: 1; height: singleColumn.height > 0 ? 5 : 0 }
        Grid {
            id: grid
            objectName: "paramGrid"
            x: 6
            columns: 2
            rowSpacing: 5
            columnSpacing: 20
        }
    }
}
