#include "LocalTimeText.h"

#include <cstdio>
#include <ctime>

QByteArray localSecondText(qint64 secondsSinceEpoch)
{
    const std::time_t t = static_cast<std::time_t>(secondsSinceEpoch);
    std::tm local{};
    if (!localtime_r(&t, &local))
        return QByteArray("0000-00-00 00:00:00");
    char text[32];
    const int n = std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900,
                                local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return QByteArray(text, n > 0 && n < int(sizeof(text)) ? n : 0);
}
