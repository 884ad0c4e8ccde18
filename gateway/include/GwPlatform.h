/*
 * Gateway platform interface: the C functions through which a host process
 * talks to the local gateway daemon (gatewayd), the records that cross the
 * call boundary byte for byte, and the result codes.
 *
 * Usable from C and C++. Every function returns a 32-bit result code:
 * GW_OK (0) on success, 0xE0000000 + n on failure.
 */
#ifndef GW_PLATFORM_H
#define GW_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Result codes ------------------------------------------------------ */
/* The list of every code the gateway and its callers produce lives in
 * GwErrorCodes.h; each code has an English and a Chinese text in the
 * "ErrorCode" translation context. */
#include "GwErrorCodes.h"

/* ---- Events ------------------------------------------------------------ */
/* Payload of CONNECTED / DISCONNECTED: the module id (int32, little-endian
 * host order) in the first four bytes.
 *
 * Gateway-level events come from the client library itself, on its own
 * supervising thread, in this order: one LOST when the connection to the
 * gateway closes (every waiting and later call then fails at once with
 * GW_ERR_CONNECTION_LOST), one RECONNECTING per failed attempt to reach it
 * again, one RESTORED when a new connection is up (calls work again; the
 * gateway may have been restarted, so the caller reloads what it shows).
 * A loss that happens while no event callback is set (a host setting it late
 * in its start-up) is not forgotten: setting a callback then delivers LOST,
 * and RESTORED if the gateway came back meanwhile, on the same thread.
 *   GATEWAY_LOST          no payload (dataLen 0)
 *   GATEWAY_RECONNECTING  int32 attempt number (1, 2, ...), then int32
 *                         milliseconds until the next attempt (8 bytes)
 *   GATEWAY_RESTORED      no payload (dataLen 0) */
typedef enum eGW_EVENT_TYPE {
    GW_EVENT_NONE = 0,
    GW_EVENT_CONNECTED = 1,
    GW_EVENT_DISCONNECTED = 2,
    GW_EVENT_DEVICE_ERROR = 3,
    GW_EVENT_GATEWAY_LOST = 4,
    GW_EVENT_GATEWAY_RECONNECTING = 5,
    GW_EVENT_GATEWAY_RESTORED = 6,
    /* A stream device's state changed. Payload: the module id (int32), then
     * the new state (int32, an eGW_DEVICE_STATE). The detail text, counters
     * and peers are read as the module parameters "StatusDetail",
     * "Counters" and "Peers". */
    GW_EVENT_DEVICE_STATUS = 7,
    GW_EVENT_FORCE_32BIT = 0x7fffffff
} eGW_EVENT_TYPE;

/* State of a stream device, as pushed by GW_EVENT_DEVICE_STATUS and read
 * (by name) as the module parameter "Status". */
typedef enum eGW_DEVICE_STATE {
    GW_DEVICE_CLOSED = 0,       /* "Closed": switched off */
    GW_DEVICE_OPENING = 1,      /* "Opening": first connection attempt under way */
    GW_DEVICE_CONNECTED = 2,    /* "Connected": connected, port open, or peers connected */
    GW_DEVICE_LISTENING = 3,    /* "Listening": server or UDP socket waiting for peers */
    GW_DEVICE_RECONNECTING = 4, /* "Reconnecting": connection failed or lost, retrying */
    GW_DEVICE_PORT_MISSING = 5, /* "PortMissing": serial port gone, reopened when it returns */
    GW_DEVICE_ERROR = 6         /* "Error": failed and closed; the detail says why */
} eGW_DEVICE_STATE;

/* ---- Records ----------------------------------------------------------- */
#define GW_PARAM_MAX_ENTRIES 128
#define GW_PARAM_KEY_SIZE 128
#define GW_PARAM_VALUE_SIZE 640
#define GW_PARAM_RESERVED_SIZE 128

typedef struct GW_PARAM_ENTRY {
    char key[GW_PARAM_KEY_SIZE];     /* NUL-terminated parameter name */
    char value[GW_PARAM_VALUE_SIZE]; /* NUL-terminated value text */
} GW_PARAM_ENTRY;

/* Key/value list exchanged by Get/SetModuleParam and GetAllParam.
 * 98,436 bytes: zero-fill before use. */
typedef struct GW_PARAM_RECORD {
    int32_t count; /* entries in use */
    GW_PARAM_ENTRY entries[GW_PARAM_MAX_ENTRIES];
    char reserved[GW_PARAM_RESERVED_SIZE];
} GW_PARAM_RECORD;

#define GW_MODULE_TYPE_SIZE 64
#define GW_MODULE_NAME_SIZE 552

/* One gateway module as listed by GW_PF_GetAllModules (624 bytes). */
typedef struct GW_MODULE_INFO {
    int32_t moduleId;
    int32_t state; /* 1 while the module's device is open, else 0 */
    char moduleType[GW_MODULE_TYPE_SIZE];
    char displayName[GW_MODULE_NAME_SIZE]; /* UTF-8 on the wire */
} GW_MODULE_INFO;

#define GW_ADDRESS_NAME_SIZE 512

/* One address of a fieldbus module as listed by
 * GW_PF_GetModuleAllAddressInfo (516 bytes). */
typedef struct GW_ADDRESS_INFO {
    int32_t addressId;
    char addressName[GW_ADDRESS_NAME_SIZE];
} GW_ADDRESS_INFO;

/* Address id that stands for the module itself. */
#define GW_MODULE_ADDRESS (-1)

/* Direction argument of GW_PF_AddModuleAddressPN / ValidateAddressParams. */
#define GW_ADDRESS_READ 1
#define GW_ADDRESS_WRITE 2

/* ---- Callbacks ----------------------------------------------------------- */
/* Called from the library's own threads, never from the caller's. The data
 * pointers are valid only during the call. */
typedef int (*GW_EVENT_CALLBACK)(eGW_EVENT_TYPE eventType, void *data, void *userData, int dataLen);
typedef int (*GW_RESULT_CALLBACK)(int moduleId, int addressId, void *resultData, int resultDataLen,
                                  void *userData);
typedef int (*GW_RECV_EVENT_CALLBACK)(int moduleId, int eventId, void *eventData, int eventDataLen,
                                      void *userData);

/* Receives the library's own log lines (connection lost and restored,
 * dropped pushes). level: 1 error, 2 warning, 4 information. Without one
 * the lines go to standard error. May be called from any thread. */
typedef void (*GW_LOG_CALLBACK)(int level, const char *text, void *userData);

/* ---- Functions ------------------------------------------------------------ */
uint32_t GW_PF_Init(int mode, const char *serverIp, int port, int dongleType);
uint32_t GW_PF_DeInit(void);

uint32_t GW_PF_SetResultCallback(GW_RESULT_CALLBACK callback, void *userData);
uint32_t GW_PF_SetRecvEventCalBack(GW_RECV_EVENT_CALLBACK callback, void *userData);
uint32_t GW_PF_SetEventCalBack(GW_EVENT_CALLBACK callback, void *userData);
uint32_t GW_PF_SetLogCallBack(GW_LOG_CALLBACK callback, void *userData);

uint32_t GW_PF_GetAllModules(GW_MODULE_INFO *modules, int capacity, int *count);
uint32_t GW_PF_AddModule(const char *moduleType, const char *displayName, int *moduleId);
uint32_t GW_PF_DeleteModule(int moduleId);
uint32_t GW_PF_UpdateModule(int moduleId, const char *displayName);

uint32_t GW_PF_GetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId);
uint32_t GW_PF_SetModuleParam(int moduleId, GW_PARAM_RECORD *params, int addressId);
uint32_t GW_PF_GetAllParam(int moduleId, GW_PARAM_RECORD *params, int addressId);

uint32_t GW_PF_GetModuleAllAddressInfo(int moduleId, GW_ADDRESS_INFO *addresses, int capacity, int *count);
uint32_t GW_PF_AddModuleAddressPN(int moduleId, const char *addressName, int direction, int *addressId);
uint32_t GW_PF_DeleteModuleAddress(int moduleId, int addressId);
/* Returns non-zero when the parameters are valid for the direction. */
uint32_t GW_PF_ValidateAddressParams(int moduleId, GW_PARAM_RECORD *params, int direction);

uint32_t GW_PF_ReadData(int moduleId, int addressId, int bufferSize, int *length, char *buffer);
uint32_t GW_PF_WriteInt(int moduleId, int addressId, int count, const char *values);
uint32_t GW_PF_WriteFloat(int moduleId, int addressId, int count, const char *values);
uint32_t GW_PF_WriteString(int moduleId, int addressId, const char *text);

/* TAB-separated IPv4 addresses of this host. */
uint32_t GW_PF_GetLocalIpList(char *buffer, int size, int *length);
/* TAB-separated UTF-8 serial port names; *length == -1: NUL-terminated. */
uint32_t GW_PF_GetSerialList(char *buffer, int size, int *length);
/* Ports held by the gateway, as text. GW_ERR_BUFFER_TOO_SMALL: *needed
 * holds the size required. */
uint32_t GW_PF_GetReservedPorts(char *buffer, int size, int *needed);

#ifdef __cplusplus
} /* extern "C" */
#endif

/* ---- Layout checks ------------------------------------------------------ */
#ifdef __cplusplus
#define GW_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define GW_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

GW_STATIC_ASSERT(sizeof(eGW_EVENT_TYPE) == 4, "event type is 32-bit");
GW_STATIC_ASSERT(sizeof(GW_PARAM_ENTRY) == 768, "param entry size");
GW_STATIC_ASSERT(offsetof(GW_PARAM_RECORD, entries) == 4, "entries offset");
GW_STATIC_ASSERT(offsetof(GW_PARAM_RECORD, reserved) == 98308, "reserved offset");
GW_STATIC_ASSERT(sizeof(GW_PARAM_RECORD) == 98436, "param record size");
GW_STATIC_ASSERT(offsetof(GW_MODULE_INFO, moduleType) == 8, "module type offset");
GW_STATIC_ASSERT(offsetof(GW_MODULE_INFO, displayName) == 72, "display name offset");
GW_STATIC_ASSERT(sizeof(GW_MODULE_INFO) == 624, "module info size");
GW_STATIC_ASSERT(offsetof(GW_ADDRESS_INFO, addressName) == 4, "address name offset");
GW_STATIC_ASSERT(sizeof(GW_ADDRESS_INFO) == 516, "address info size");

#endif /* GW_PLATFORM_H */
