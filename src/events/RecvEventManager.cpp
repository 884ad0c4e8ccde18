#include "RecvEventManager.h"

RecvEventManager *RecvEventManager::Instance()
{
    static RecvEventManager manager;
    return &manager;
}
