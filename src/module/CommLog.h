#pragma once
// One logging macro for the whole module: every record carries the tag
// "CommManager", the calling function and the line, as "[tag] [func@line] ".

#include "Slog.h"

inline constexpr const char kCommLogTag[] = "CommManager";

enum CommLogLevel {
    CommLogDetail = 2, // detail records
    CommLogInfo = 4,   // enter/leave, success, every failure
};

// The function and line a record is written for. A helper that writes records
// on behalf of its caller takes the caller's site (COMM_LOG_SITE), so that each
// record names the function whose record it is, not the helper.
struct CommLogSite {
    const char *function;
    int line;
};

#define COMM_LOG_SITE (CommLogSite{__func__, __LINE__})

#define COMM_LOG_AT(site, level, fmt, ...)                                                                   \
    Slog_LogPrint(kCommLogTag, (level), "[%s] [%s@%d] " fmt, kCommLogTag, (site).function, (site).line,     \
                  ##__VA_ARGS__)

#define COMM_LOG(level, fmt, ...) COMM_LOG_AT(COMM_LOG_SITE, level, fmt, ##__VA_ARGS__)
