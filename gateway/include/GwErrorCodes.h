/*
 * Every result code of the gateway platform, in one place. 0 is success;
 * failures are 0xE0000000 + n. Each code has an English and a Chinese text
 * in the "ErrorCode" translation context under the key "0x" + upper-case hex
 * (translations/commmanager_*.ts); a test checks that none is missing.
 */
#ifndef GW_ERROR_CODES_H
#define GW_ERROR_CODES_H

#define GW_OK 0x00000000u

/* Codes that callers of the library (the module) produce themselves. */
#define GW_ERR_PARSE 0xE0000001u        /* a gateway value could not be parsed */
#define GW_ERR_NO_MEMORY 0xE0000002u    /* a buffer could not be allocated */
#define GW_ERR_NO_TEMPLATE 0xE000000Au  /* no device template prepared */
#define GW_ERR_GENERAL 0xE00000FFu      /* empty text, device not open, id already present */

/* Codes of the gateway and its client library. */
#define GW_ERR_NOT_INITIALISED 0xE0000003u  /* GW_PF_Init not called or failed */
#define GW_ERR_CONNECT_FAILED 0xE0000004u   /* the gateway refused or is missing */
#define GW_ERR_TIMEOUT 0xE0000005u          /* the gateway did not answer in time */
#define GW_ERR_CONNECTION_LOST 0xE0000006u  /* the gateway closed the connection */
#define GW_ERR_PROTOCOL 0xE0000007u         /* malformed or unexpected frame */
#define GW_ERR_INVALID_ARGUMENT 0xE0000008u /* null pointer, bad size or count */
#define GW_ERR_STORAGE 0xE0000009u          /* the state database refused a change */
#define GW_ERR_UNKNOWN_MODULE 0xE000000Bu   /* no module with that id */
#define GW_ERR_UNKNOWN_TYPE 0xE000000Cu     /* no module type with that name */
#define GW_ERR_UNKNOWN_KEY 0xE000000Du      /* the module has no such parameter */
#define GW_ERR_UNKNOWN_ADDRESS 0xE000000Eu  /* the module has no such address */
#define GW_ERR_INVALID_VALUE 0xE000000Fu    /* the value is not valid for the key */
#define GW_ERR_INVALID_PORT 0xE0000010u     /* port outside 1-65535 */
#define GW_ERR_INVALID_IP 0xE0000011u       /* not a canonical IPv4 address */
#define GW_ERR_BUFFER_TOO_SMALL 0xE0000012u /* the caller's buffer is too small */
#define GW_ERR_VALUE_TOO_LONG 0xE0000013u   /* a name or value exceeds its field */
#define GW_ERR_NOT_OPEN 0xE0000014u         /* the device is not open */
#define GW_ERR_PORT_IN_USE 0xE0000015u      /* the local port is taken */
#define GW_ERR_OPEN_FAILED 0xE0000016u      /* the device could not be opened */
#define GW_ERR_WRITE_FAILED 0xE0000017u     /* the device did not accept the data */
#define GW_ERR_NOT_SUPPORTED 0xE0000018u    /* the operation does not apply to the module type */
#define GW_ERR_ADDRESS_RANGE 0xE0000019u    /* address outside the constraints or id range full */
#define GW_ERR_COUNT_MISMATCH 0xE000001Au   /* value count disagrees with the text */
#define GW_ERR_BUSY 0xE000001Bu             /* the gateway is busy; try again */
#define GW_ERR_NAME_EMPTY 0xE000001Cu       /* an empty display name */
#define GW_ERR_WRONG_DIRECTION 0xE000001Du  /* data written to an address from the side that reads it */
#define GW_ERR_REQUEST_TOO_LARGE 0xE000001Eu /* the request exceeds the frame limit; not sent */

/* Accepted; takes effect when the device is next opened. Callers count it as
 * success for values that need a reopen. */
#define GW_ERR_PENDING_REOPEN 0xE000010Cu

#endif /* GW_ERROR_CODES_H */
