pragma Singleton
import QtQuick 2.15

// The look of the communication page by role: colours, font sizes and the
// opacity of disabled controls. Every view takes these from here (Theme.text,
// Theme.fontBody, ...) and writes no colour or font size of its own, so that
// one role looks the same everywhere and a new view starts from the same
// choices. Roles that share a value today stay separate names: they may part.
// The images (icons/icons.txt) are drawn in the accent and text colours below.
QtObject {
    // Window frame: the dark title bar and the navigation bar beside the pages.
    readonly property color titleBar: "#262626"
    readonly property color titleText: "#BEBEBE"
    readonly property color closeHover: "#E5484D"
    readonly property color closePressed: "#C43C3C"
    readonly property color navigationBar: "#333333"
    readonly property color navigationHover: "#3B3B3B"
    readonly property color navigationCurrent: titleBar
    readonly property color navigationMark: "#4C9AFF"
    readonly property color navigationText: titleText
    readonly property color navigationTextCurrent: "#FFFFFF"
    readonly property color navigationEdge: titleBar

    // Pages and the panels on them.
    readonly property color page: "#F5F6F8"
    readonly property color surface: "#FFFFFF"          // lists, dialogs, message boxes, text areas
    readonly property color divider: "#e0dfde"          // between list and parameters; lines under titles
    readonly property color rowSeparator: "#F0F0F0"     // between the rows of a list
    readonly property color rowHover: page
    readonly property color frame: "#D9DDE3"            // border of text areas and tables
    readonly property color popupBorder: "#C3C9D1"      // border of dialogs, menus, drop-down lists
    readonly property color modalShade: "#66000000"     // over the page behind a dialog

    // Text.
    readonly property color text: "#333333"
    readonly property color textSecondary: "#5B6B7F"    // values that cannot be edited, column captions
    readonly property color textCaption: "#8A94A3"      // the small line above a name
    readonly property color textDisabled: "#A0A8B3"
    readonly property color textOnAccent: "#FFFFFF"     // on primary buttons

    // Accent: marks beside headings, focus, the current choice.
    readonly property color accent: "#2F7CF6"
    readonly property color highlight: "#E8EEF9"        // hovered or selected row, pressed button
    readonly property color highlightCurrent: "#F2F6FD" // current entry of a drop-down list

    // Input controls: boxes, drop-downs, secondary buttons.
    readonly property color controlBackground: surface
    readonly property color controlReadOnly: "#F2F3F5"  // read-only or disabled box
    readonly property color controlBorder: "#C3C9D1"
    readonly property color controlBorderFocus: accent

    // A device's state by level (CommDevice.statusLevel), and the outcome of
    // a send: working, on its way, failed, switched off.
    readonly property color statusOk: "#2BA471"
    readonly property color statusPending: "#E8A33D"
    readonly property color statusFault: "#E5484D"
    readonly property color statusOff: "#A0A8B3"
    function statusColor(level) {
        if (level === "ok")
            return statusOk
        if (level === "pending")
            return statusPending
        if (level === "fault")
            return statusFault
        return statusOff
    }

    // Disabled controls fade: input boxes a little, buttons and switches more.
    readonly property real disabledBoxOpacity: 0.6
    readonly property real disabledButtonOpacity: 0.45

    // The gateway banner over the pages: away (warning), back (restored).
    readonly property color bannerWarning: "#FFF4E5"
    readonly property color bannerWarningText: "#8A4B00"
    readonly property color bannerRestored: "#E9F7EF"
    readonly property color bannerRestoredText: "#1E6B3A"

    // Font sizes in pixels, and the family of received data.
    readonly property int fontCaption: 11               // the small line above a name
    readonly property int fontBody: 12                  // labels, values, buttons, lists
    readonly property int fontHeading: 13               // headings, window title, device names
    readonly property int fontTitle: 14                 // list and dialog titles
    readonly property string fontMonospace: "monospace"
}
