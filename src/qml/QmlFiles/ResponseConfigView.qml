import QtQuick 2.15
import comm.devicesManager 1.0

// Response page: how the host's process control answers over a communication
// device (trigger texts and separators, camera control, solution loading, and
// the texts sent when the device connects or disconnects and when the process
// turns busy or idle). A plain view: no model stands behind it, so what is
// typed lasts only as long as the view.
Rectangle {
    id: root
    color: Theme.page

    Flickable {
        anchors.fill: parent
        contentHeight: settings.height + 16
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: settings
            width: root.width
            spacing: 2

            SectionHeading {
                width: settings.width
                text: DevicesManager.qsLMTr("ILMXProcessControl")
            }
            FieldRow {
                label: DevicesManager.qsLMTr("RunParam_Communication Device")
                DeviceComboBox {
                    anchors.fill: parent
                    onDeviceChosen: deviceID = id
                }
            }
            Repeater {
                model: [DevicesManager.qsLMTr("TriggerString"), DevicesManager.qsLMTr("RunParam_Split Symbol")]
                delegate: FieldRow {
                    label: modelData
                    SubscriptionBox { anchors.fill: parent }
                }
            }
            SectionHeading {
                width: settings.width
                text: DevicesManager.qsLMTr("RunParam_Camera Control")
            }
            Repeater {
                model: [DevicesManager.qsLMTr("RunParam_CameraSeparator"), DevicesManager.qsLMTr("RunParam_SampleSeparator")]
                delegate: FieldRow {
                    label: modelData
                    SubscriptionBox { anchors.fill: parent }
                }
            }
            SectionHeading {
                width: settings.width
                text: DevicesManager.qsLMTr("Lang_SolLoad")
            }
            FieldRow {
                label: DevicesManager.qsLMTr("RunParam_SolutionTimeOut")
                LmRangeInputBox {
                    anchors.fill: parent
                    minValue: 0
                    maxValue: 600000
                    step: 100
                }
            }
            SectionHeading {
                width: settings.width
                text: DevicesManager.qsLMTr("Lang_ResponseConfig")
            }
            Repeater {
                model: [DevicesManager.qsLMTr("RunParam_Connect Trigger"), DevicesManager.qsLMTr("RunParam_Disconnect Trigger"),
                        DevicesManager.qsLMTr("RunParam_Busy Trigger"), DevicesManager.qsLMTr("RunParam_Free Trigger")]
                delegate: FieldRow {
                    label: modelData
                    SubscriptionBox { anchors.fill: parent }
                }
            }
        }
    }
}
