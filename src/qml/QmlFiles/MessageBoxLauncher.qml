import QtQuick 2.15

// Opens MessageBox.qml for a model's messageBox(type, text) signal. Each box
// is a window of its own and is destroyed when it closes.
Item {
    id: root
    property var lastBox: null
    property var openBoxes: []
    signal opened(var box)

    function open(type, text, onAccepted, onRejected) {
        var component = Qt.createComponent("MessageBox.qml")
        if (component.status !== Component.Ready) {
            console.warn("MessageBox.qml:", component.errorString())
            return null
        }
        var box = component.createObject(root, { msgType: type, msgText: text })
        box.accepted.connect(function() { if (onAccepted) onAccepted() })
        box.rejected.connect(function() { if (onRejected) onRejected() })
        box.visibleChanged.connect(function() {
            if (!box.visible)
                root.dispose(box)
        })
        openBoxes = openBoxes.concat([box])
        box.show()
        box.requestActivate()
        root.lastBox = box
        root.opened(box)
        return box
    }
    function dispose(box) {
        openBoxes = openBoxes.filter(function(b) { return b !== box })
        if (root.lastBox === box)
            root.lastBox = null
        box.destroy()
    }
    function closeAll() {
        var boxes = openBoxes
        for (var i = 0; i < boxes.length; ++i)
            boxes[i].close()
    }
    Component.onDestruction: closeAll()
}
