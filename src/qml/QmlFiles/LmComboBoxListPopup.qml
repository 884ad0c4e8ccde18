import QtQuick 2.15
import QtQuick.Controls 2.15
import comm.devicesManager 1.0
import comm.GlobalEventFilter 1.0
import "ControlHelpers.js" as Helpers

// The drop-down list of LmComboBox and LmComboBoxEdit. It closes on a press
// outside itself, unless the press lies in maskedRegion (the box that opened
// it, which toggles the list itself). While it is open the wheel is kept from
// changing values elsewhere on the page.
Popup {
    id: root
    property var comboBoxListModel: []
    property int itemHeight: 26
    property Item maskedRegion: null
    property int selectedIndex: -1
    property int maxVisibleItems: 8
    property bool translateItems: true
    signal currentSelectIndexChanged(int index)

    padding: 1
    closePolicy: Popup.NoAutoClose
    height: Math.max(1, Math.min(list.count, maxVisibleItems)) * itemHeight + 2 * padding

    background: Rectangle {
        color: Theme.surface
        border.color: Theme.popupBorder
        radius: 2
    }
    contentItem: ListView {
        id: list
        objectName: "comboList"
        clip: true
        model: root.comboBoxListModel
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {
            policy: list.count > root.maxVisibleItems ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
        }
        delegate: Rectangle {
            width: list.width
            height: root.itemHeight
            color: area.containsMouse ? Theme.highlight : (index === root.selectedIndex ? Theme.highlightCurrent : Theme.surface)
            LmText {
                anchors.fill: parent
                anchors.leftMargin: 8
                anchors.rightMargin: 8
                verticalAlignment: Text.AlignVCenter
                elide: Text.ElideRight
                color: index === root.selectedIndex ? Theme.accent : Theme.text
                text: root.translateItems ? DevicesManager.qsLMTr(modelData) : modelData
            }
            MouseArea {
                id: area
                objectName: "comboItem" + index
                anchors.fill: parent
                hoverEnabled: true
                onClicked: {
                    root.close()
                    root.currentSelectIndexChanged(index)
                }
            }
        }
    }
    GlobalEventFilter {
        filterEnable: root.visible
        wheelFilterEnable: root.visible
        onGlobalMousePressEvent: {
            if (!Helpers.containsGlobal(root.contentItem, globalPos)
                    && !Helpers.containsGlobal(root.maskedRegion, globalPos))
                root.close()
        }
    }
}
