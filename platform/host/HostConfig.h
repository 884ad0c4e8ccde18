#pragma once
// The host's configuration as the module sees it: the gateway port and the
// language. Filled by the application at start-up (or by tests).

#include <QString>

class HostConfig
{
public:
    static void setGatewayPort(const QString &port); // text, as the host stores it
    static QString gatewayPort();
    static void setLanguage(const QString &language); // "en" or "zh_CN"
    static QString language();
};
