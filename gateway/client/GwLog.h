#pragma once

#include "GwPlatform.h"

// The library's own log lines: to the host's GW_LOG_CALLBACK when one is
// set, else to standard error with the "gwplatform: " prefix.
enum GwLogLevel { GwLogError = 1, GwLogWarning = 2, GwLogInfo = 4 };

void gwSetLogCallback(GW_LOG_CALLBACK callback, void *userData);
void gwLog(int level, const char *fmt, ...) __attribute__((format(printf, 2, 3)));
