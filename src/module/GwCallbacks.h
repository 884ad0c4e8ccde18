#pragma once
// The gateway callbacks the module installs; they run on gateway threads.

#include "GwPlatform.h"

int EventCallBack(eGW_EVENT_TYPE eventType, void *data, void *userData, int dataLen);
int ResultCallBack(int moduleId, int addressId, void *resultData, int resultDataLen, void *userData);
// The client library's own lines (gateway lost and restored) into the host log.
void LogCallBack(int level, const char *text, void *userData);
