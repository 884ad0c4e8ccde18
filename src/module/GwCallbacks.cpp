#include "GwCallbacks.h"

#include "CEventDispatcher.h"
#include "CommLog.h"

int EventCallBack(eGW_EVENT_TYPE eventType, void *data, void *, int dataLen)
{
    CEventDispatcher::Instance()->SendEvent(eventType, data, dataLen);
    return 0;
}

int ResultCallBack(int moduleId, int addressId, void *resultData, int resultDataLen, void *)
{
    CEventDispatcher::Instance()->SendEvent(moduleId, addressId, resultData, resultDataLen);
    return 0;
}

void LogCallBack(int, const char *text, void *)
{
    COMM_LOG(CommLogInfo, "gwplatform: %s", text ? text : "");
}
