import QtQuick 2.15
import comm.GlobalEventFilter 1.0
import "ControlHelpers.js" as Helpers

// Four-part IPv4 address input. A part takes 0..255; three digits or a "."
// move on to the next part, Backspace in an empty part goes back. When the
// operator leaves the box, a complete address becomes currentIPString and is
// reported with ipEdited; an incomplete one is put back.
Rectangle {
    id: root
    property string currentIPString
    property int singleBoxWidth: 40
    property int singleBoxHeight: 26
    property bool readOnly: false
    signal ipEdited(string ip)

    implicitWidth: 4 * singleBoxWidth + 3 * 6
    implicitHeight: singleBoxHeight
    radius: 3
    color: root.readOnly || !root.enabled ? Theme.controlReadOnly : Theme.controlBackground
    border.color: editing ? Theme.controlBorderFocus : Theme.controlBorder
    opacity: enabled ? 1.0 : Theme.disabledBoxOpacity

    readonly property bool editing: parts.count === 4 && parts.itemAt(3) !== null
        && (parts.itemAt(0).fieldFocused || parts.itemAt(1).fieldFocused
            || parts.itemAt(2).fieldFocused || parts.itemAt(3).fieldFocused)

    function part(i) { return parts.itemAt(i) }
    // Shows an address in the four parts; anything else empties them.
    function showAddress(ip) {
        var pieces = String(ip).split(".")
        for (var i = 0; i < 4; ++i) {
            if (part(i))
                part(i).text = pieces.length === 4 ? pieces[i] : ""
        }
    }
    // The address of the four parts in canonical form, or "" when incomplete.
    function typedAddress() {
        var pieces = []
        for (var i = 0; i < 4; ++i) {
            var t = part(i).text
            if (t.length === 0)
                return ""
            var n = parseInt(t, 10)
            if (isNaN(n) || n > 255)
                return ""
            pieces.push(String(n))
        }
        return pieces.join(".")
    }
    function finishEdit() {
        var ip = typedAddress()
        if (ip.length === 0 || ip === root.currentIPString) {
            showAddress(root.currentIPString)
            return
        }
        root.currentIPString = ip
        showAddress(ip)
        root.ipEdited(ip)
    }

    onCurrentIPStringChanged: showAddress(currentIPString)
    Component.onCompleted: showAddress(currentIPString)

    Row {
        anchors.centerIn: parent
        Repeater {
            id: parts
            model: 4
            delegate: Row {
                property alias text: field.text
                readonly property bool fieldFocused: field.activeFocus
                function takeFocus() { field.forceActiveFocus(); field.selectAll() }
                function dropFocus() { field.focus = false }
                TextInput {
                    id: field
                    objectName: "ipPart" + index
                    width: root.singleBoxWidth
                    height: root.singleBoxHeight
                    horizontalAlignment: TextInput.AlignHCenter
                    verticalAlignment: TextInput.AlignVCenter
                    readOnly: root.readOnly
                    selectByMouse: true
                    font.pixelSize: Theme.fontBody
                    color: root.enabled ? Theme.text : Theme.textDisabled
                    maximumLength: 3
                    validator: RegExpValidator { regExp: /(25[0-5]|2[0-4]\d|1\d\d|[1-9]?\d)?/ }
                    onTextEdited: {
                        if (text.length === 3 && index < 3)
                            parts.itemAt(index + 1).takeFocus()
                    }
                    Keys.onPressed: {
                        if ((event.key === Qt.Key_Period || event.key === Qt.Key_Space) && index < 3) {
                            if (text.length > 0)
                                parts.itemAt(index + 1).takeFocus()
                            event.accepted = true
                        } else if (event.key === Qt.Key_Backspace && text.length === 0 && index > 0) {
                            parts.itemAt(index - 1).takeFocus()
                            event.accepted = true
                        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
                            field.focus = false
                            root.finishEdit()
                            event.accepted = true
                        }
                    }
                }
                Text {
                    visible: index < 3
                    width: 6
                    height: root.singleBoxHeight
                    verticalAlignment: Text.AlignVCenter
                    horizontalAlignment: Text.AlignHCenter
                    text: "."
                    color: Theme.text
                }
            }
        }
    }
    // Leaving the whole box (not moving between its parts) ends the edit.
    // Focus moving from one part to the next passes through "no part focused",
    // so the check waits until the move is over.
    onEditingChanged: {
        if (!editing)
            Qt.callLater(finishIfLeft)
    }
    function finishIfLeft() {
        if (!editing)
            finishEdit()
    }
    GlobalEventFilter {
        filterEnable: root.editing
        onGlobalMousePressEvent: {
            if (!Helpers.containsGlobal(root, globalPos) && root.part(0))
                for (var i = 0; i < 4; ++i)
                    root.part(i).dropFocus()
        }
    }
}
