#include "ModuleRegistry.h"

#include "HostConfig.h"
#include "IocContainar.h"

#include <cstdio>
#include <cstring>

using namespace LmCore;

namespace {
constexpr int32_t kProxyModuleNumber = 11000;
constexpr char kProxyPortParam[] = "GetProxyInitPort";

using ModuleListQueryCmd = QueryCommand<MODULE_INFO_LIST_CONDITION_BY_TYPE__, MODULE_INFO_LIST__>;
using RunParamQueryCmd = QueryCommand<RUN_PARAM_CONDITION__, ILMX_MODULE_PARAM__>;

void setResult(COMMAND_RESULT__ &result, int32_t status, int32_t errorCode, const QString &message)
{
    std::memset(&result, 0, sizeof(result));
    result.status = status;
    result.errorCode = errorCode;
    std::snprintf(result.message, sizeof(result.message), "%s", message.toUtf8().constData());
}

// The module type a registered module number belongs to: the host keeps the
// communication manager (10999) under type 3.
int32_t typeOfModule(int32_t moduleNumber)
{
    return moduleNumber == 10999 ? 3 : 0;
}
} // namespace

std::shared_ptr<ModuleRegistry> ModuleRegistry::installDefault()
{
    auto registry = std::make_shared<ModuleRegistry>();
    LmCommon::IocContainar::Instance().Register<ICommandService>(registry);
    return registry;
}

COMMAND_RESULT__ ModuleRegistry::Execute(Command &command)
{
    int kind = -1;
    if (dynamic_cast<ModuleListQueryCmd *>(&command))
        kind = ModuleListQuery;
    else if (dynamic_cast<AddModuleCommand *>(&command))
        kind = AddModule;
    else if (dynamic_cast<RunParamQueryCmd *>(&command))
        kind = RunParamQuery;

    std::lock_guard<std::mutex> lock(m_mutex);
    m_executed[kind] += 1;
    if (m_forced.contains(kind)) {
        const Forced f = m_forced.value(kind);
        setResult(command.result, f.status, f.errorCode, f.message);
        return command.result;
    }

    switch (kind) {
    case ModuleListQuery: {
        auto &query = static_cast<ModuleListQueryCmd &>(command);
        QVector<MODULE_INFO__> matches;
        for (const MODULE_INFO__ &m : m_modules)
            if (m.moduleType == query.condition.moduleType)
                matches.append(m);
        delete[] query.answer.entries;
        query.answer.entries = matches.isEmpty() ? nullptr : new MODULE_INFO__[size_t(matches.size())];
        for (int i = 0; i < matches.size(); ++i)
            query.answer.entries[i] = matches[i];
        query.answer.count = matches.size();
        setResult(command.result, CMD_STATUS_SUCCESS, 0, QString());
        break;
    }
    case AddModule: {
        auto &add = static_cast<AddModuleCommand &>(command);
        for (const MODULE_INFO__ &m : m_modules) {
            if (m.moduleId == add.moduleNumber) {
                setResult(command.result, CMD_STATUS_ERROR, int32_t(0x80000003),
                          QStringLiteral("module %1 already registered").arg(add.moduleNumber));
                return command.result;
            }
        }
        MODULE_INFO__ info;
        std::memset(&info, 0, sizeof(info));
        info.moduleId = add.moduleNumber;
        info.moduleType = typeOfModule(add.moduleNumber);
        std::snprintf(info.moduleName, sizeof(info.moduleName), "%s", add.moduleName);
        std::snprintf(info.displayName, sizeof(info.displayName), "%s", add.displayName);
        m_modules.append(info);
        setResult(command.result, CMD_STATUS_SUCCESS, 0, QString());
        break;
    }
    case RunParamQuery: {
        auto &query = static_cast<RunParamQueryCmd &>(command);
        const bool known = query.condition.moduleNumber == kProxyModuleNumber
                           && std::strncmp(query.condition.paramName, kProxyPortParam,
                                           sizeof(query.condition.paramName)) == 0;
        const QString port = HostConfig::gatewayPort();
        if (!known) {
            setResult(command.result, CMD_STATUS_ERROR, int32_t(0x80000004), QStringLiteral("unknown run parameter"));
        } else if (port.isEmpty()) {
            setResult(command.result, CMD_STATUS_ERROR, int32_t(0x80000005),
                      QStringLiteral("no gateway port configured"));
        } else {
            std::memset(&query.answer, 0, sizeof(query.answer));
            std::snprintf(query.answer.paramName, sizeof(query.answer.paramName), "%s", kProxyPortParam);
            std::snprintf(query.answer.paramValue, sizeof(query.answer.paramValue), "%s", port.toUtf8().constData());
            setResult(command.result, CMD_STATUS_SUCCESS, 0, QString());
        }
        break;
    }
    default:
        setResult(command.result, CMD_STATUS_ERROR, int32_t(0x80000001), QStringLiteral("unknown command"));
        break;
    }
    return command.result;
}

void ModuleRegistry::forceAnswer(CommandKind kind, int32_t status, int32_t errorCode, const QString &message)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_forced[kind] = {status, errorCode, message};
}

void ModuleRegistry::clearForcedAnswers()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_forced.clear();
}

void ModuleRegistry::clearModules()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_modules.clear();
}

QVector<MODULE_INFO__> ModuleRegistry::modules() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_modules;
}

int ModuleRegistry::executedCount(CommandKind kind) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_executed.value(kind);
}
