import QtQuick 2.15

// Editor of a byte-match receive event: its parsing and match rules, and the
// assembly of its reply.
Column {
    id: root
    property var event: null
    spacing: 2

    RecvEventParseConfigView {
        width: root.width
        event: root.event
    }
    RecvEventAssemblyConfigView {
        width: root.width
        event: root.event
    }
}
