#pragma once

#include <cstdint>

// Request operations. The fields of each are listed in PROTOCOL.md; numbers
// are part of the wire format and never reused.
enum class GwOp : uint16_t {
    Hello = 1,
    GetAllModules = 2,
    AddModule = 3,
    DeleteModule = 4,
    UpdateModule = 5,
    GetModuleParam = 6,
    SetModuleParam = 7,
    GetAllParam = 8,
    GetAddresses = 9,
    AddAddress = 10,
    DeleteAddress = 11,
    ValidateAddress = 12,
    ReadData = 13,
    WriteInt = 14,
    WriteFloat = 15,
    WriteString = 16,
    GetLocalIpList = 17,
    GetSerialList = 18,
    GetReservedPorts = 19,
    PlcWrite = 20, // the PLC side of a simulated fieldbus: set a read address's bytes
    PlcRead = 21,  // the PLC side: the bytes of a write address
};
