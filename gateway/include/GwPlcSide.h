/*
 * The PLC side of the gateway's simulated fieldbus devices. Not part of the
 * platform interface a host uses: the gwplc tool and tests call these to play
 * the PLC, over the same connection GW_PF_Init opened.
 */
#ifndef GW_PLC_SIDE_H
#define GW_PLC_SIDE_H

#include "GwPlatform.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The address ids of the simulated devices: read addresses (PLC -> vision)
 * and write addresses (vision -> PLC) each take their own range, which the
 * device descriptions give the module's address tables. PROFINET devices also
 * have the fixed addresses 0 (read) and 1000 (write), 32 16-bit elements each,
 * not listed with the others; only their "PollEnable" can be set. With it on,
 * a PLC write to the fixed read address is pushed to the vision side, and
 * while the device is open the gateway toggles the heartbeat bit of the fixed
 * write address (bit 7 of its first byte) every "Heartbeat" milliseconds. */
#define GW_PLC_READ_ID_FIRST 1
#define GW_PLC_READ_ID_LAST 999
#define GW_PLC_WRITE_ID_FIRST 1001
#define GW_PLC_WRITE_ID_LAST 1999
#define GW_PLC_FIXED_READ_ID 0
#define GW_PLC_FIXED_WRITE_ID 1000

/* Sets the bytes of a read address (PLC -> vision) while the device is open.
 * The bytes replace the whole address; what they do not cover reads zero.
 * GW_ERR_WRONG_DIRECTION for a write address, GW_ERR_NOT_OPEN for a closed
 * device, GW_ERR_VALUE_TOO_LONG for more bytes than the address holds. With
 * "Upload" true on the address, the gateway pushes the new content to every
 * client's result callback with the address's id. */
uint32_t GW_PLC_WriteAddress(int moduleId, int addressId, const char *data, int length);
/* The bytes of any address (typically a write address: vision -> PLC);
 * GW_ERR_BUFFER_TOO_SMALL with *length = the size needed when they do not fit. */
uint32_t GW_PLC_ReadAddress(int moduleId, int addressId, char *buffer, int size, int *length);

#ifdef __cplusplus
}
#endif

#endif /* GW_PLC_SIDE_H */
