import QtQuick 2.15
import QtQuick.Controls 2.15

// Parameter controls of one device: for every item proxy the QML file that it
// names, given the proxy's data model as pItemData. Read-only texts and
// address tables take the single-column area; every other control a cell of
// the two-column grid below it.
Flickable {
    id: root
    property var controls: []
    property var connections: []
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
        for (var i = 0; i < connections.length; ++i) {
            // The model is gone already when its device was deleted.
            if (connections[i].data)
                connections[i].data.messageBox.disconnect(connections[i].handler)
        }
        // destroy() is deferred: take the controls out of the layout at once.
        for (var j = 0; j < controls.length; ++j) {
            controls[j].visible = false
            controls[j].parent = null
            controls[j].destroy()
        }
        connections = []
        controls = []
    }

    // Builds the controls of the given proxies, replacing the previous ones.
    function build(proxies) {
        clear()
        var made = []
        var wired = []
        var gridIndex = 0
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
                ++gridIndex
            }
            var control = component.createObject(parentItem, props)
            if (!control)
                continue
            made.push(control)
            var handler = messageHandler()
            proxy.data.messageBox.connect(handler)
            wired.push({ data: proxy.data, handler: handler })
        }
        controls = made
        connections = wired
        contentY = 0
    }
    function messageHandler() {
        return function(type, text) { root.itemMessage(type, text) }
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
