#pragma once
// Host service container: resolves a service interface to the instance that
// the host registered for it.

#include <memory>
#include <mutex>
#include <typeindex>
#include <unordered_map>

namespace LmCommon {

class IocContainar
{
public:
    static IocContainar &Instance();

    template <typename T>
    void Register(std::shared_ptr<T> service)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_services[std::type_index(typeid(T))] = std::move(service);
    }

    // Resolution without key; null when nothing is registered for T.
    template <typename T>
    std::shared_ptr<T> Resolve()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto it = m_services.find(std::type_index(typeid(T)));
        return it == m_services.end() ? nullptr : std::static_pointer_cast<T>(it->second);
    }

private:
    std::mutex m_mutex;
    std::unordered_map<std::type_index, std::shared_ptr<void>> m_services;
};

} // namespace LmCommon
