import QtQuick 2.15

// Fixed PROFINET addresses of the device: the button opens their bit dialog.
ItemRow {
    id: root
    property alias dialog: dialog

    LmButton {
        objectName: "fixedAddressButton"
        anchors.fill: parent
        primary: false
        text: root.pItemData ? root.pItemData.readAddressId + " / " + root.pItemData.writeAddressId : ""
        onClicked: dialog.open()
    }
    FixedbitAddressDlg {
        id: dialog
        pItemData: root.pItemData
    }
}
