#pragma once
// The two gateway callbacks the module installs; both run on gateway threads.

#include "GwPlatform.h"

int EventCallBack(eGW_EVENT_TYPE eventType, void *data, void *userData, int dataLen);
int ResultCallBack(int moduleId, int addressId, void *resultData, int resultDataLen, void *userData);
