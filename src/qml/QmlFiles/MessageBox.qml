import QtQuick 2.15
import QtQuick.Window 2.15
import comm.devicesManager 1.0

// Message for the operator: a frameless, window-modal box that stays on top,
// centred on the screen. The type numbers are those of the models'
// messageBox(int, QString) signals.
Window {
    id: root
    enum MessageBoxType {
        Ask = 0,
        Warning = 1,
        Error = 2,
        Succ = 3,
        Default = 4
    }
    property int msgType: MessageBox.MessageBoxType.Default
    property string msgText
    readonly property bool asking: msgType === MessageBox.MessageBoxType.Ask
    readonly property string iconSource: {
        switch (msgType) {
        case MessageBox.MessageBoxType.Ask: return "qrc:/Images/ask.png"
        case MessageBox.MessageBoxType.Warning: return "qrc:/Images/warning.png"
        case MessageBox.MessageBoxType.Error: return "qrc:/Images/error.png"
        case MessageBox.MessageBoxType.Succ: return "qrc:/Images/ok.png"
        default: return "qrc:/Images/default.png"
        }
    }
    signal accepted()
    signal rejected()

    width: 290
    height: 155
    flags: Qt.Dialog | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    modality: Qt.WindowModal
    x: (Screen.width - width) / 2
    y: (Screen.height - height) / 2
    color: Theme.surface

    function finish(acceptedByUser) {
        root.close()
        if (acceptedByUser)
            root.accepted()
        else
            root.rejected()
    }

    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.color: Theme.popupBorder
    }
    MouseArea {
        objectName: "msgClose"
        anchors { top: parent.top; right: parent.right }
        width: 28
        height: 28
        onClicked: root.finish(false)
        Image {
            anchors.centerIn: parent
            source: parent.pressed ? "qrc:/Images/msg_close_click.png" : "qrc:/Images/msg_close_normal.png"
        }
    }
    Image {
        id: icon
        objectName: "msgIcon"
        x: 20
        y: 34
        source: root.iconSource
    }
    LmText {
        objectName: "msgText"
        anchors { left: icon.right; leftMargin: 14; right: parent.right; rightMargin: 18; top: icon.top }
        height: 60
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        maximumLineCount: 4
        text: root.msgText
    }
    Row {
        anchors { right: parent.right; bottom: parent.bottom; margins: 14 }
        spacing: 10
        LmButton {
            objectName: "msgYes"
            visible: root.asking
            text: DevicesManager.qsLMTr("Yes")
            onClicked: root.finish(true)
        }
        LmButton {
            objectName: "msgNo"
            visible: root.asking
            primary: false
            text: DevicesManager.qsLMTr("No")
            onClicked: root.finish(false)
        }
        LmButton {
            objectName: "msgConfirm"
            visible: !root.asking
            text: DevicesManager.qsLMTr("Confirm")
            onClicked: root.finish(true)
        }
    }
}
