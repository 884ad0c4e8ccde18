#include "CEventDispatcher.h"

#include "CommLog.h"
#include "DevicesManager.h"

#include <cstring>
#include <new>

CEventDispatcher::CEventDispatcher()
{
    qRegisterMetaType<QSharedPointer<char>>("QSharedPointer<char>");
    qRegisterMetaType<eGW_EVENT_TYPE>("eGW_EVENT_TYPE");
}

CEventDispatcher *CEventDispatcher::Instance()
{
    static CEventDispatcher dispatcher;
    return &dispatcher;
}

void CEventDispatcher::SendEvent(eGW_EVENT_TYPE eventType, void *data, int dataLen)
{
    const int len = dataLen > 0 && data ? dataLen : 0;
    char *copy = new (std::nothrow) char[size_t(len > 0 ? len : 1)];
    if (!copy) {
        COMM_LOG(CommLogInfo, "new char[%d] failed.", dataLen);
        return;
    }
    if (len > 0)
        std::memcpy(copy, data, size_t(len));
    QSharedPointer<char> payload(copy, [](char *p) { delete[] p; });
    emit EventTriggered(eventType, payload, len);
}

void CEventDispatcher::SendEvent(int moduleId, int addressId, void *data, int dataLen)
{
    DevicesManager::Instance()->HandleGWResult(moduleId, addressId, data, dataLen);
}
