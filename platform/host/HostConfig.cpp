#include "HostConfig.h"

#include <mutex>

namespace {
std::mutex g_mutex;
QString g_port;
QString g_language = QStringLiteral("zh_CN");
} // namespace

void HostConfig::setGatewayPort(const QString &port)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_port = port;
}

QString HostConfig::gatewayPort()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_port;
}

void HostConfig::setLanguage(const QString &language)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_language = language;
}

QString HostConfig::language()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_language;
}
