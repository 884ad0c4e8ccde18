#pragma once
// One logging macro for the whole module: every record carries the tag
// "CommManager", the calling function and the line, as "[tag] [func@line] ".

#include "Slog.h"

inline constexpr const char kCommLogTag[] = "CommManager";

enum CommLogLevel {
    CommLogDetail = 2, // detail records
    CommLogInfo = 4,   // enter/leave, success, every failure
};

#define COMM_LOG(level, fmt, ...)                                                                  \
    Slog_LogPrint(kCommLogTag, (level), "[%s] [%s@%d] " fmt, kCommLogTag, __func__, __LINE__,     \
                  ##__VA_ARGS__)
