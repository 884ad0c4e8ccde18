import QtQuick 2.15
import QtQuick.Controls 2.15

// Tool tip of the page, shown as plain text like LmText (its texts come from
// the device descriptions); otherwise the style's tool tip.
ToolTip {
    id: root
    contentItem: Text {
        text: root.text
        font: root.font
        wrapMode: Text.Wrap
        color: root.palette.toolTipText
        textFormat: Text.PlainText
    }
}
