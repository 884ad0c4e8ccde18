<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>ErrorCode</name>
    <message>
        <source>0xE000001E</source>
        <translation>The request is too large to send to the gateway</translation>
    </message>
    <message>
        <source>0x0</source>
        <translation>Success</translation>
    </message>
    <message>
        <source>0xE0000001</source>
        <translation>A gateway value could not be read</translation>
    </message>
    <message>
        <source>0xE0000002</source>
        <translation>Out of memory</translation>
    </message>
    <message>
        <source>0xE0000003</source>
        <translation>The gateway is not connected</translation>
    </message>
    <message>
        <source>0xE0000004</source>
        <translation>The gateway cannot be reached</translation>
    </message>
    <message>
        <source>0xE0000005</source>
        <translation>The gateway did not answer in time</translation>
    </message>
    <message>
        <source>0xE0000006</source>
        <translation>The connection to the gateway was lost</translation>
    </message>
    <message>
        <source>0xE0000007</source>
        <translation>The gateway sent an invalid message</translation>
    </message>
    <message>
        <source>0xE0000008</source>
        <translation>Invalid argument</translation>
    </message>
    <message>
        <source>0xE0000009</source>
        <translation>The gateway could not save the change</translation>
    </message>
    <message>
        <source>0xE000000A</source>
        <translation>No device template is prepared</translation>
    </message>
    <message>
        <source>0xE000000B</source>
        <translation>The device does not exist</translation>
    </message>
    <message>
        <source>0xE000000C</source>
        <translation>Unknown device type</translation>
    </message>
    <message>
        <source>0xE000000D</source>
        <translation>Unknown parameter</translation>
    </message>
    <message>
        <source>0xE000000E</source>
        <translation>The address does not exist</translation>
    </message>
    <message>
        <source>0xE000000F</source>
        <translation>Invalid value</translation>
    </message>
    <message>
        <source>0xE0000010</source>
        <translation>The port must be between 1 and 65535</translation>
    </message>
    <message>
        <source>0xE0000011</source>
        <translation>Not a valid IPv4 address</translation>
    </message>
    <message>
        <source>0xE0000012</source>
        <translation>The buffer is too small</translation>
    </message>
    <message>
        <source>0xE0000013</source>
        <translation>The value is too long</translation>
    </message>
    <message>
        <source>0xE0000014</source>
        <translation>The device is not open</translation>
    </message>
    <message>
        <source>0xE0000015</source>
        <translation>The port is already in use</translation>
    </message>
    <message>
        <source>0xE0000016</source>
        <translation>The device could not be opened</translation>
    </message>
    <message>
        <source>0xE0000017</source>
        <translation>The device did not accept the data</translation>
    </message>
    <message>
        <source>0xE0000018</source>
        <translation>Not supported by this device type</translation>
    </message>
    <message>
        <source>0xE0000019</source>
        <translation>The address is out of range</translation>
    </message>
    <message>
        <source>0xE000001A</source>
        <translation>The number of values does not match</translation>
    </message>
    <message>
        <source>0xE000001B</source>
        <translation>The gateway is busy</translation>
    </message>
    <message>
        <source>0xE000001C</source>
        <translation>The name must not be empty</translation>
    </message>
    <message>
        <source>0xE000001D</source>
        <translation>This address carries data the other way</translation>
    </message>
    <message>
        <source>0xE00000FF</source>
        <translation>The operation failed</translation>
    </message>
    <message>
        <source>0xE000010C</source>
        <translation>Saved; takes effect when the device is next opened</translation>
    </message>
</context>
<context>
    <name>Lumora</name>
    <message>
        <source>Lang_GatewayStateDirInUse</source>
        <translation>Another gateway (process %2) already uses the state folder %1. Close the other communication manager, or start this one with another --state-dir.</translation>
    </message>
    <message>
        <source>Lang_GatewayRestored</source>
        <translation>The gateway is back; the device list was read again.</translation>
    </message>
    <message>
        <source>Lang_GatewayReconnecting</source>
        <translation>Reconnecting to the gateway: attempt %1 failed, next in %2 s.</translation>
    </message>
    <message>
        <source>Lang_GatewayLost</source>
        <translation>The gateway is not reachable. Every device is shown as not connected until it is back.</translation>
    </message>
    <message>
        <source>16bit</source>
        <translation>16-bit</translation>
    </message>
    <message>
        <source>16进制发送</source>
        <translation>Send as hex</translation>
    </message>
    <message>
        <source>32bit</source>
        <translation>32-bit</translation>
    </message>
    <message>
        <source>8bit</source>
        <translation>8-bit</translation>
    </message>
    <message>
        <source>AND</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>ChangeSolution</source>
        <translation>Change Solution</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>CommandType</source>
        <translation>Command Type</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Create</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Data Record</source>
        <translation>Data Record</translation>
    </message>
    <message>
        <source>EIP_SoftElementNum_tip</source>
        <translation>Number of 16-bit elements</translation>
    </message>
    <message>
        <source>EipModule</source>
        <translation>EtherNet/IP</translation>
    </message>
    <message>
        <source>ExecuteProcedure</source>
        <translation>Run Procedure</translation>
    </message>
    <message>
        <source>HeartbeatInterval</source>
        <translation>Heartbeat (ms)</translation>
    </message>
    <message>
        <source>ILMXProcessControl</source>
        <translation>Process Control</translation>
    </message>
    <message>
        <source>InsightModule</source>
        <translation>Insight Camera</translation>
    </message>
    <message>
        <source>Lang_AciiToHexTips</source>
        <translation>ASCII text is converted to hex</translation>
    </message>
    <message>
        <source>Lang_AddAddressFailed</source>
        <translation>Adding the address failed</translation>
    </message>
    <message>
        <source>Lang_Address</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>Lang_AddressAdd</source>
        <translation>Add Address</translation>
    </message>
    <message>
        <source>Lang_AddressConflict</source>
        <translation> overlaps an existing address</translation>
    </message>
    <message>
        <source>Lang_AddressError</source>
        <translation>No address selected</translation>
    </message>
    <message>
        <source>Lang_AddressManager</source>
        <translation>Address Settings</translation>
    </message>
    <message>
        <source>Lang_AddressNotExist</source>
        <translation>The address does not exist</translation>
    </message>
    <message>
        <source>Lang_AddressParamError</source>
        <translation>Invalid address parameters</translation>
    </message>
    <message>
        <source>Lang_AddressSelection</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>Lang_AddressSpace</source>
        <translation>Address Space</translation>
    </message>
    <message>
        <source>Lang_Assembly</source>
        <translation>Assembly</translation>
    </message>
    <message>
        <source>Lang_AssemblyOutput</source>
        <translation>Assembled Output</translation>
    </message>
    <message>
        <source>Lang_AutoReconnect</source>
        <translation>Reconnect</translation>
    </message>
    <message>
        <source>Lang_BaudRate</source>
        <translation>Baud Rate</translation>
    </message>
    <message>
        <source>Lang_ByteCompare</source>
        <translation>Compare Bytes</translation>
    </message>
    <message>
        <source>Lang_ByteLength</source>
        <translation>Byte Length</translation>
    </message>
    <message>
        <source>Lang_ByteMatch</source>
        <translation>Byte Match</translation>
    </message>
    <message>
        <source>Lang_CatFieldbus</source>
        <translation>Fieldbus</translation>
    </message>
    <message>
        <source>Lang_CatFrame</source>
        <translation>Framing</translation>
    </message>
    <message>
        <source>Lang_CatLocal</source>
        <translation>This Host</translation>
    </message>
    <message>
        <source>Lang_CatSerial</source>
        <translation>Line Settings</translation>
    </message>
    <message>
        <source>Lang_CatTarget</source>
        <translation>Target</translation>
    </message>
    <message>
        <source>Lang_CharacterTrigger</source>
        <translation>Text Trigger</translation>
    </message>
    <message>
        <source>Lang_ClearAllAddress</source>
        <translation>Delete all addresses?</translation>
    </message>
    <message>
        <source>Lang_ClickCancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Lang_ComDeviceList</source>
        <translation>Device List</translation>
    </message>
    <message>
        <source>Lang_CommMagrCreateFailed</source>
        <translation>Creating the communication module failed</translation>
    </message>
    <message>
        <source>Lang_CommSet</source>
        <translation>Communication Settings</translation>
    </message>
    <message>
        <source>Lang_CompareRule</source>
        <translation>Compare Rule</translation>
    </message>
    <message>
        <source>Lang_Confirm</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Lang_CreatCount</source>
        <translation>Created</translation>
    </message>
    <message>
        <source>Lang_DataBits</source>
        <translation>Data Bits</translation>
    </message>
    <message>
        <source>Lang_DataSyn</source>
        <translation>Sync Data</translation>
    </message>
    <message>
        <source>Lang_DealMethod</source>
        <translation>Processing</translation>
    </message>
    <message>
        <source>Lang_Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Lang_DeleteFail</source>
        <translation>Deleting the device failed</translation>
    </message>
    <message>
        <source>Lang_DescriptionMissing</source>
        <translation>The device description %1 is missing or cannot be opened.</translation>
    </message>
    <message>
        <source>Lang_DescriptionUnreadable</source>
        <translation>The device description %1 cannot be read: line %2 (%3).</translation>
    </message>
    <message>
        <source>Lang_Device</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>Lang_DeviceAddFailed</source>
        <translation>Adding the device failed: </translation>
    </message>
    <message>
        <source>Lang_DeviceIdExisted</source>
        <translation>the device ID already exists</translation>
    </message>
    <message>
        <source>Lang_DeviceManager</source>
        <translation>Devices</translation>
    </message>
    <message>
        <source>Lang_DeviceNotBuilt</source>
        <translation>The parameters of this device cannot be built from its description.</translation>
    </message>
    <message>
        <source>Lang_DeviceWithoutParameters</source>
        <translation>No parameters</translation>
    </message>
    <message>
        <source>Lang_DirctOutput</source>
        <translation>Direct Output</translation>
    </message>
    <message>
        <source>Lang_EndChar</source>
        <translation>End Characters</translation>
    </message>
    <message>
        <source>Lang_EventAssemblyOutput</source>
        <translation>Output the assembled data</translation>
    </message>
    <message>
        <source>Lang_EventByte</source>
        <translation>Match received bytes</translation>
    </message>
    <message>
        <source>Lang_EventConfig</source>
        <translation>Event Settings</translation>
    </message>
    <message>
        <source>Lang_EventDirectOutput</source>
        <translation>Output the data as received</translation>
    </message>
    <message>
        <source>Lang_EventProtocolAssembly</source>
        <translation>Compare and assemble the text</translation>
    </message>
    <message>
        <source>Lang_EventProtocolPrase</source>
        <translation>Parse the text by separators</translation>
    </message>
    <message>
        <source>Lang_EventShell</source>
        <translation>Hand the data to a script</translation>
    </message>
    <message>
        <source>Lang_EventTrigger</source>
        <translation>Event Trigger</translation>
    </message>
    <message>
        <source>Lang_EventType</source>
        <translation>Event Type</translation>
    </message>
    <message>
        <source>Lang_FixedAddress</source>
        <translation>Fixed Addresses</translation>
    </message>
    <message>
        <source>Lang_FixedReadAddress</source>
        <translation>Fixed Read Address</translation>
    </message>
    <message>
        <source>Lang_FixedWriteAddress</source>
        <translation>Fixed Write Address</translation>
    </message>
    <message>
        <source>Lang_FlowControl</source>
        <translation>Flow Control</translation>
    </message>
    <message>
        <source>Lang_FlowHardware</source>
        <translation>Hardware (RTS/CTS)</translation>
    </message>
    <message>
        <source>Lang_FlowNone</source>
        <translation>None</translation>
    </message>
    <message>
        <source>Lang_FlowSoftware</source>
        <translation>Software (XON/XOFF)</translation>
    </message>
    <message>
        <source>Lang_GWSDKInitFailed</source>
        <translation>Connecting to the gateway failed</translation>
    </message>
    <message>
        <source>Lang_GetProxyInitPortFailed</source>
        <translation>Reading the gateway port failed</translation>
    </message>
    <message>
        <source>Lang_GetReservedPorts_Failed</source>
        <translation>Ports in use could not be read</translation>
    </message>
    <message>
        <source>Lang_Heart</source>
        <translation>Heartbeat</translation>
    </message>
    <message>
        <source>Lang_HeartType</source>
        <translation>Heartbeat Type</translation>
    </message>
    <message>
        <source>Lang_Heartbeat</source>
        <translation>Heartbeat (ms)</translation>
    </message>
    <message>
        <source>Lang_IOTrigger</source>
        <translation>IO Trigger</translation>
    </message>
    <message>
        <source>Lang_InputAssembly</source>
        <translation>Input Assembly</translation>
    </message>
    <message>
        <source>Lang_InputCfg</source>
        <translation>Input</translation>
    </message>
    <message>
        <source>Lang_LocalIP</source>
        <translation>Local IP</translation>
    </message>
    <message>
        <source>Lang_LocalPort</source>
        <translation>Local Port</translation>
    </message>
    <message>
        <source>Lang_MaxConnections</source>
        <translation>Max. Clients</translation>
    </message>
    <message>
        <source>Lang_Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Lang_NameEmpty</source>
        <translation>The name must not be empty</translation>
    </message>
    <message>
        <source>Lang_NameError</source>
        <translation>Renaming the device failed</translation>
    </message>
    <message>
        <source>Lang_NameModify</source>
        <translation>Rename Device</translation>
    </message>
    <message>
        <source>Lang_NewResourceFailed</source>
        <translation>Out of memory</translation>
    </message>
    <message>
        <source>Lang_Num</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>Lang_OnOff</source>
        <translation>On/Off</translation>
    </message>
    <message>
        <source>Lang_OpenCommDev</source>
        <translation>Switch the device on first</translation>
    </message>
    <message>
        <source>Lang_Operate</source>
        <translation>Operate</translation>
    </message>
    <message>
        <source>Lang_Operation</source>
        <translation>Operation</translation>
    </message>
    <message>
        <source>Lang_OutputAssembly</source>
        <translation>Output Assembly</translation>
    </message>
    <message>
        <source>Lang_Parity</source>
        <translation>Parity</translation>
    </message>
    <message>
        <source>Lang_ParityEven</source>
        <translation>Even</translation>
    </message>
    <message>
        <source>Lang_ParityMark</source>
        <translation>Mark</translation>
    </message>
    <message>
        <source>Lang_ParityNone</source>
        <translation>None</translation>
    </message>
    <message>
        <source>Lang_ParityOdd</source>
        <translation>Odd</translation>
    </message>
    <message>
        <source>Lang_ParitySpace</source>
        <translation>Space</translation>
    </message>
    <message>
        <source>Lang_ParseConfig</source>
        <translation>Parse Settings</translation>
    </message>
    <message>
        <source>Lang_ParseList</source>
        <translation>Parse List</translation>
    </message>
    <message>
        <source>Lang_PmList</source>
        <translation>Parameters</translation>
    </message>
    <message>
        <source>Lang_PmNameEmpty</source>
        <translation>The text to send is empty</translation>
    </message>
    <message>
        <source>Lang_PortName</source>
        <translation>Serial Port</translation>
    </message>
    <message>
        <source>Lang_ProfinetToolTip</source>
        <translation>Letters, digits, '-' and '.' only</translation>
    </message>
    <message>
        <source>Lang_ProtocolAssembly</source>
        <translation>Protocol Assembly</translation>
    </message>
    <message>
        <source>Lang_ProtocolParse</source>
        <translation>Protocol Parse</translation>
    </message>
    <message>
        <source>Lang_QueryCommMgrFailed</source>
        <translation>Querying the communication module failed</translation>
    </message>
    <message>
        <source>Lang_ReadAddresses</source>
        <translation>Read Addresses</translation>
    </message>
    <message>
        <source>Lang_ReconnectInterval</source>
        <translation>Reconnect (ms)</translation>
    </message>
    <message>
        <source>Lang_RecvEvents</source>
        <translation>Receive Events</translation>
    </message>
    <message>
        <source>Lang_Rename</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>Lang_ReplyDevice</source>
        <translation>Reply Device</translation>
    </message>
    <message>
        <source>Lang_ReservedPorts</source>
        <translation>Ports in use: </translation>
    </message>
    <message>
        <source>Lang_ResponseConfig</source>
        <translation>Responses</translation>
    </message>
    <message>
        <source>Lang_Result</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>Lang_RuleList</source>
        <translation>Rules</translation>
    </message>
    <message>
        <source>Lang_RuleLogic</source>
        <translation>Rule Logic</translation>
    </message>
    <message>
        <source>Lang_Script</source>
        <translation>Script</translation>
    </message>
    <message>
        <source>Lang_SendContent</source>
        <translation>Content</translation>
    </message>
    <message>
        <source>Lang_SendDataContent</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Lang_SendDataType</source>
        <translation>Data Type</translation>
    </message>
    <message>
        <source>Lang_SendFail</source>
        <translation>Sending failed</translation>
    </message>
    <message>
        <source>Lang_SendSucceed</source>
        <translation>Sent</translation>
    </message>
    <message>
        <source>Lang_SendTest</source>
        <translation>Send Test</translation>
    </message>
    <message>
        <source>Lang_SendTextIllegal</source>
        <translation>The text contains invalid characters</translation>
    </message>
    <message>
        <source>Lang_SentEmpty</source>
        <translation>The text to send is empty</translation>
    </message>
    <message>
        <source>Lang_Sequence</source>
        <translation>Sequence</translation>
    </message>
    <message>
        <source>Lang_SolLoad</source>
        <translation>Load Solution</translation>
    </message>
    <message>
        <source>Lang_SplitConfig</source>
        <translation>Separators</translation>
    </message>
    <message>
        <source>Lang_StartEnd</source>
        <translation>Start-End</translation>
    </message>
    <message>
        <source>Lang_StationName</source>
        <translation>Station Name</translation>
    </message>
    <message>
        <source>Lang_StopBits</source>
        <translation>Stop Bits</translation>
    </message>
    <message>
        <source>Lang_StringCompare</source>
        <translation>Compare Text</translation>
    </message>
    <message>
        <source>Lang_StringLength</source>
        <translation>Text Length</translation>
    </message>
    <message>
        <source>Lang_TargetIP</source>
        <translation>Target IP</translation>
    </message>
    <message>
        <source>Lang_TargetPort</source>
        <translation>Target Port</translation>
    </message>
    <message>
        <source>Lang_TimeInterval</source>
        <translation>Interval (ms)</translation>
    </message>
    <message>
        <source>Lang_TriggerIO</source>
        <translation>Trigger IO</translation>
    </message>
    <message>
        <source>Lang_TriggerOperate</source>
        <translation>Triggers</translation>
    </message>
    <message>
        <source>Lang_Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Lang_TypeExplain</source>
        <translation>Values separated by ';'</translation>
    </message>
    <message>
        <source>Lang_WriteAddresses</source>
        <translation>Write Addresses</translation>
    </message>
    <message>
        <source>Lang_queDelAddress</source>
        <translation>Delete this address?</translation>
    </message>
    <message>
        <source>Lnag_TriggerEvent</source>
        <translation>Trigger Event</translation>
    </message>
    <message>
        <source>MatchMode</source>
        <translation>Match Mode</translation>
    </message>
    <message>
        <source>MultiData</source>
        <translation>Multiple Values</translation>
    </message>
    <message>
        <source>Multi_BindingDevice</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>PollEnable</source>
        <translation>Polling</translation>
    </message>
    <message>
        <source>ProfinetModule</source>
        <translation>PROFINET</translation>
    </message>
    <message>
        <source>ProtocolType</source>
        <translation>Protocol</translation>
    </message>
    <message>
        <source>RunParam_Busy Trigger</source>
        <translation>Busy Trigger</translation>
    </message>
    <message>
        <source>RunParam_Camera Control</source>
        <translation>Camera Control</translation>
    </message>
    <message>
        <source>RunParam_CameraSeparator</source>
        <translation>Camera Separator</translation>
    </message>
    <message>
        <source>RunParam_Communication Device</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>RunParam_Communication Protocol</source>
        <translation>Protocol</translation>
    </message>
    <message>
        <source>RunParam_Connect Trigger</source>
        <translation>Connect Trigger</translation>
    </message>
    <message>
        <source>RunParam_Content</source>
        <translation>Content</translation>
    </message>
    <message>
        <source>RunParam_Disconnect Trigger</source>
        <translation>Disconnect Trigger</translation>
    </message>
    <message>
        <source>RunParam_Free Trigger</source>
        <translation>Idle Trigger</translation>
    </message>
    <message>
        <source>RunParam_IntDataType</source>
        <translation>Integer Type</translation>
    </message>
    <message>
        <source>RunParam_Polling</source>
        <translation>Polling</translation>
    </message>
    <message>
        <source>RunParam_SampleSeparator</source>
        <translation>Sample Separator</translation>
    </message>
    <message>
        <source>RunParam_Send Event</source>
        <translation>Send Events</translation>
    </message>
    <message>
        <source>RunParam_Soft Component Address</source>
        <translation>First Address</translation>
    </message>
    <message>
        <source>RunParam_Soft Component Points</source>
        <translation>Points</translation>
    </message>
    <message>
        <source>RunParam_SolutionTimeOut</source>
        <translation>Solution Timeout</translation>
    </message>
    <message>
        <source>RunParam_Split Symbol</source>
        <translation>Separator</translation>
    </message>
    <message>
        <source>RunParam_Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>RunParam_Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>RunParam_Timeout</source>
        <translation>Timeout (ms)</translation>
    </message>
    <message>
        <source>RunParam_Trigger Character</source>
        <translation>Trigger Text</translation>
    </message>
    <message>
        <source>RunParam_TriggerActivation</source>
        <translation>Activation</translation>
    </message>
    <message>
        <source>SerialModule</source>
        <translation>Serial Port</translation>
    </message>
    <message>
        <source>ShownAsHex</source>
        <translation>Show as hex</translation>
    </message>
    <message>
        <source>SingleData</source>
        <translation>Single Value</translation>
    </message>
    <message>
        <source>Tab_Assemble List</source>
        <translation>Assembly List</translation>
    </message>
    <message>
        <source>Tab_Basic Config</source>
        <translation>Basic Settings</translation>
    </message>
    <message>
        <source>TcpClientModule</source>
        <translation>TCP Client</translation>
    </message>
    <message>
        <source>TcpServerModule</source>
        <translation>TCP Server</translation>
    </message>
    <message>
        <source>TriggerString</source>
        <translation>Trigger Text</translation>
    </message>
    <message>
        <source>UdpModule</source>
        <translation>UDP</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>UploadTip</source>
        <translation>Push new data to the page</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>create</source>
        <translation>Create</translation>
    </message>
    <message>
        <source>deviceName</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>send</source>
        <translation>Send</translation>
    </message>
    <message>
        <source>value</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>位置-长度</source>
        <translation>Start-Length</translation>
    </message>
    <message>
        <source>发送事件列表</source>
        <translation>Send Events</translation>
    </message>
    <message>
        <source>发送数据</source>
        <translation>Send</translation>
    </message>
    <message>
        <source>接收事件列表</source>
        <translation>Receive Events</translation>
    </message>
    <message>
        <source>接收数据</source>
        <translation>Received</translation>
    </message>
    <message>
        <source>请选择</source>
        <translation>Select...</translation>
    </message>
    <message>
        <source>通信参数</source>
        <translation>Parameters</translation>
    </message>
    <message>
        <source>通信管理</source>
        <translation>Communication</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Ready</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Busy</translation>
    </message>
    <message>
        <source>Trigger acknowledge</source>
        <translation>Trigger acknowledge</translation>
    </message>
    <message>
        <source>Result OK</source>
        <translation>Result OK</translation>
    </message>
    <message>
        <source>Result NG</source>
        <translation>Result NG</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Job change done</source>
        <translation>Job change done</translation>
    </message>
    <message>
        <source>Heartbeat</source>
        <translation>Heartbeat</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>Online</translation>
    </message>
    <message>
        <source>Reset done</source>
        <translation>Reset done</translation>
    </message>
    <message>
        <source>Job change failed</source>
        <translation>Job change failed</translation>
    </message>
    <message>
        <source>Result valid</source>
        <translation>Result valid</translation>
    </message>
    <message>
        <source>Trigger refused</source>
        <translation>Trigger refused</translation>
    </message>
    <message>
        <source>Image stored</source>
        <translation>Image stored</translation>
    </message>
    <message>
        <source>Trigger</source>
        <translation>Trigger</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>Job change request</source>
        <translation>Job change request</translation>
    </message>
    <message>
        <source>Clear error</source>
        <translation>Clear error</translation>
    </message>
    <message>
        <source>Online request</source>
        <translation>Online request</translation>
    </message>
    <message>
        <source>Result acknowledge</source>
        <translation>Result acknowledge</translation>
    </message>
    <message>
        <source>Trigger enable</source>
        <translation>Trigger enable</translation>
    </message>
    <message>
        <source>Image save request</source>
        <translation>Image save request</translation>
    </message>
    <message>
        <source>Illumination on</source>
        <translation>Illumination on</translation>
    </message>
    <message>
        <source>PLC heartbeat</source>
        <translation>PLC heartbeat</translation>
    </message>
    <message>
        <source>Lang_DevState_Closed</source>
        <translation>Off</translation>
    </message>
    <message>
        <source>Lang_DevState_Opening</source>
        <translation>Opening</translation>
    </message>
    <message>
        <source>Lang_DevState_Connected</source>
        <translation>Connected</translation>
    </message>
    <message>
        <source>Lang_DevState_Listening</source>
        <translation>Listening</translation>
    </message>
    <message>
        <source>Lang_DevState_Reconnecting</source>
        <translation>Reconnecting</translation>
    </message>
    <message>
        <source>Lang_DevState_PortMissing</source>
        <translation>Port missing</translation>
    </message>
    <message>
        <source>Lang_DevState_Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Lang_SentBytes</source>
        <translation>Sent %1 bytes</translation>
    </message>
    <message>
        <source>Lang_CntRxBytes</source>
        <translation>Received</translation>
    </message>
    <message>
        <source>Lang_CntTxBytes</source>
        <translation>Sent</translation>
    </message>
    <message>
        <source>Lang_CntRxFrames</source>
        <translation>Frames in</translation>
    </message>
    <message>
        <source>Lang_CntTxFrames</source>
        <translation>Frames out</translation>
    </message>
    <message>
        <source>Lang_CntDropped</source>
        <translation>Dropped</translation>
    </message>
    <message>
        <source>Lang_CntErrors</source>
        <translation>Errors</translation>
    </message>
    <message>
        <source>Lang_CntReconnects</source>
        <translation>Reconnects</translation>
    </message>
    <message>
        <source>Lang_CntSince</source>
        <translation>Since</translation>
    </message>
    <message>
        <source>Lang_ResetCounters</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>Lang_Peers</source>
        <translation>Peers</translation>
    </message>
    <message>
        <source>Lang_PeerAddress</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>Lang_PeerSince</source>
        <translation>Connected since</translation>
    </message>
    <message>
        <source>Lang_PeerRx</source>
        <translation>Received</translation>
    </message>
    <message>
        <source>Lang_PeerTx</source>
        <translation>Sent</translation>
    </message>
    <message>
        <source>Lang_PeerLast</source>
        <translation>Last activity</translation>
    </message>
    <message>
        <source>Lang_DropPeer</source>
        <translation>Drop</translation>
    </message>
    <message>
        <source>Lang_NoPeers</source>
        <translation>No peer connected</translation>
    </message>
</context>
</TS>
