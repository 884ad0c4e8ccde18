import QtQuick 2.15

// Editor of a text-compare receive event: its input and the assembly of its
// reply.
Column {
    id: root
    property var event: null
    spacing: 2

    RecvEventInputConfigView {
        width: root.width
        event: root.event
        splitField: "inputSplitChar"
    }
    RecvEventAssemblyConfigView {
        width: root.width
        event: root.event
    }
}
