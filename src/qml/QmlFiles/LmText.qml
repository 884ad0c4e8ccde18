import QtQuick 2.15

// Text of the page, shown as plain text: device names, display names, received
// data, description texts and the messages built from them come from
// operators, files and peers, and what looks like markup in them ("<b>",
// "<...>") is shown as typed, never interpreted. Body font and text colour of
// the theme unless set.
Text {
    textFormat: Text.PlainText
    color: Theme.text
    font.pixelSize: Theme.fontBody
}
