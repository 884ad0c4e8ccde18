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

/* Sets the bytes of a read address (PLC -> vision). With "Upload" true on the
 * address and the device open, the gateway pushes them as a result. */
uint32_t GW_PLC_WriteAddress(int moduleId, int addressId, const char *data, int length);
/* The bytes of an address (typically a write address: vision -> PLC). */
uint32_t GW_PLC_ReadAddress(int moduleId, int addressId, char *buffer, int size, int *length);

#ifdef __cplusplus
}
#endif

#endif /* GW_PLC_SIDE_H */
