#include "GwLog.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {
std::mutex g_logMutex;
GW_LOG_CALLBACK g_logCallback = nullptr;
void *g_logUserData = nullptr;
} // namespace

void gwSetLogCallback(GW_LOG_CALLBACK callback, void *userData)
{
    std::lock_guard<std::mutex> lock(g_logMutex);
    g_logCallback = callback;
    g_logUserData = userData;
}

void gwLog(int level, const char *fmt, ...)
{
    char text[512];
    va_list args;
    va_start(args, fmt);
    std::vsnprintf(text, sizeof(text), fmt, args);
    va_end(args);
    GW_LOG_CALLBACK callback;
    void *userData;
    {
        std::lock_guard<std::mutex> lock(g_logMutex);
        callback = g_logCallback;
        userData = g_logUserData;
    }
    if (callback)
        callback(level, text, userData);
    else
        std::fprintf(stderr, "gwplatform: %s\n", text);
}
