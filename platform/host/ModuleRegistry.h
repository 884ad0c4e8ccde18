#pragma once
// The host's in-process command service: a registry of host modules and the
// run parameters they answer. Registered in IocContainar by installDefault().
// Tests can make any kind of command answer a given status, code and message.

#include "ICommandService.h"

#include <QMap>
#include <QString>
#include <QVector>
#include <memory>
#include <mutex>

class ModuleRegistry : public LmCore::ICommandService
{
public:
    enum CommandKind { ModuleListQuery, AddModule, RunParamQuery };

    // Creates the registry and registers it as the host command service.
    static std::shared_ptr<ModuleRegistry> installDefault();

    LmCore::COMMAND_RESULT__ Execute(LmCore::Command &command) override;

    // Scripting for tests: the next commands of this kind answer so (and do nothing).
    void forceAnswer(CommandKind kind, int32_t status, int32_t errorCode, const QString &message);
    void clearForcedAnswers();
    void clearModules();
    QVector<LmCore::MODULE_INFO__> modules() const;
    int executedCount(CommandKind kind) const;

private:
    mutable std::mutex m_mutex;
    QVector<LmCore::MODULE_INFO__> m_modules;
    struct Forced { int32_t status; int32_t errorCode; QString message; };
    QMap<int, Forced> m_forced;
    QMap<int, int> m_executed;
};
